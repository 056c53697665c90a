#include "tests/wine/model_sondrel/model_object.h"

namespace kelvane::test {

ModelObject::ModelObject(com::ObjectCount& count, com::TypeLibrary types)
    : SondrelFace(std::move(types)),
      counted_(count),
      radios_([] { return std::chrono::steady_clock::now(); }),
      thread_([this] { run(); }) {
  asked_.heard = [this](const std::string& request) {
    board_.note(request);
    host_.wake();
  };
}

ModelObject::~ModelObject() {
  ending_ = true;
  SetEvent(board_.ordered());
  thread_.join();
}

void ModelObject::run() {
  while (!ending_) {
    WaitForSingleObject(board_.ordered(), INFINITE);
    host_.wake();
  }
}

void ModelObject::carryOut() {
  if (board_->done == board_->orders) return;
  const int mark = static_cast<int>(board_->mark);
  switch (board_->order) {
    case ModelBoard::Happens:
      radios_.happens(mark, static_cast<unsigned>(board_->number.load()));
      break;
    case ModelBoard::SayInputs:
      board_->inputs = HIWORD(GetQueueStatus(QS_INPUT));
      break;
    default:
      radios_.link(mark, board_->order == ModelBoard::LinkUp);
  }
  board_->done = board_->orders.load();
  SetEvent(board_.carriedOut());
}

void ModelObject::deliverEvents() {
  carryOut();
  radios_.deliver(listener());
}

}  // namespace kelvane::test
