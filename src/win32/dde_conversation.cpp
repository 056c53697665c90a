#include "win32/dde_conversation.h"

#include <algorithm>
#include <utility>

#include "base/barrier.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kTopic[] = L"DTMF";
constexpr wchar_t kItem[] = L"Digit";
constexpr DWORD kLookAround = 1000;  ///< ms between two looks whether the server lives
constexpr DWORD kAnswerLimit = 2000;
constexpr int kMostAnnounced = 64;
/// A key and a time; what a server sends beyond that is not looked at.
constexpr DWORD kLongestItem = 255;

}  // namespace

std::shared_ptr<DdeConversation> DdeConversation::start(Index rx, std::string server,
                                                        std::shared_ptr<DdeMail> mail) {
  std::shared_ptr<DdeConversation> made(
      new DdeConversation(rx, std::move(server), std::move(mail)));
  // The thread holds it too: one that waits for a hung server outlives its owner.
  auto held = std::make_unique<std::shared_ptr<DdeConversation>>(made);
  made->thread_ = CreateThread(nullptr, 0, threadMain, held.get(), 0, nullptr);
  if (made->thread_)
    held.release();
  else
    made->state_ = DigitLink::Failed;
  return made;
}

DdeConversation::DdeConversation(Index rx, std::string server, std::shared_ptr<DdeMail> mail)
    : rx_(rx),
      server_(std::move(server)),
      mail_(std::move(mail)),
      wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

DdeConversation::~DdeConversation() {
  if (thread_) CloseHandle(thread_);
  CloseHandle(wake_);
}

void DdeConversation::refresh() {
  refresh_ = true;
  SetEvent(wake_);
}

void DdeConversation::stop() {
  stop_ = true;
  SetEvent(wake_);
}

DWORD WINAPI DdeConversation::threadMain(void* parameter) {
  const std::unique_ptr<std::shared_ptr<DdeConversation>> self(
      static_cast<std::shared_ptr<DdeConversation>*>(parameter));
  barrier(
      "a conversation with a server of digits", [&] { (*self)->run(); },
      [&](const std::string&) { (*self)->state_ = DigitLink::Failed; });
  return 0;
}

void DdeConversation::run() {
  bool begun = begin();
  while (begun && !stop_) {
    const bool again = refresh_.exchange(false);
    if (!conversation_ && again) connect();
    // What a hung server owed is asked for again when the links are refreshed.
    if (conversation_ && (again || state_ == DigitLink::Linked)) fetch();
    if (stop_) break;
    MsgWaitForMultipleObjectsEx(1, &wake_, kLookAround, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    if (conversation_ && !alive()) drop(DigitLink::Waiting);
    if (!std::exchange(lost_, false)) continue;
    // A system was seen whose DDE never finds a server again that took its leave of it.
    finish();
    begun = begin();
  }
  if (!begun) return;
  drop(DigitLink::Closed);
  finish();
}

/// Makes the thread known to DDE.
bool DdeConversation::begin() {
  instance_ = 0;
  if (DdeInitializeW(&instance_, callback, APPCLASS_STANDARD | APPCMD_CLIENTONLY, 0) !=
      DMLERR_NO_ERROR) {
    state_ = DigitLink::Failed;
    return false;
  }
  item_ = DdeCreateStringHandleW(instance_, kItem, CP_WINUNICODE);
  return true;
}

void DdeConversation::finish() {
  DdeFreeStringHandle(instance_, item_);
  DdeUninitialize(instance_);
}

void DdeConversation::connect() {
  const HSZ server = DdeCreateStringHandleW(instance_, wide(server_).c_str(), CP_WINUNICODE);
  const HSZ topic = DdeCreateStringHandleW(instance_, kTopic, CP_WINUNICODE);
  if (server && topic) conversation_ = DdeConnect(instance_, server, topic, nullptr);
  DdeFreeStringHandle(instance_, server);
  DdeFreeStringHandle(instance_, topic);
  if (!conversation_) {
    state_ = server && topic ? DigitLink::Waiting : DigitLink::Failed;
    return;
  }
  DdeSetUserHandle(conversation_, static_cast<DWORD>(QID_SYNC), reinterpret_cast<DWORD_PTR>(this));
  if (!askToBeTold()) return drop(DigitLink::Failed);
  state_ = DigitLink::Linked;
}

bool DdeConversation::askToBeTold() {
  const HDDEDATA done = DdeClientTransaction(nullptr, 0, conversation_, item_, CF_TEXT,
                                             XTYP_ADVSTART | XTYPF_NODATA, kAnswerLimit, nullptr);
  return done && conversation_;
}

/// Asks for each text that was announced. One that is announced twice in a row is two keys.
void DdeConversation::fetch() {
  asked_ = 0;
  while (announced_ > asked_ && conversation_ && !stop_) {
    const HDDEDATA data = DdeClientTransaction(nullptr, 0, conversation_, item_, CF_TEXT,
                                               XTYP_REQUEST, kAnswerLimit, nullptr);
    if (data) {
      barrier("taking a digit", [&] { take(data); });
      DdeFreeDataHandle(data);
    } else if (conversation_ && !canGoOnAfter(DdeGetLastError(instance_))) {
      return;
    }
  }
}

/// What follows from a request that brought no text; false when there is no sense in asking more.
bool DdeConversation::canGoOnAfter(UINT why) {
  if (why == DMLERR_NOTPROCESSED) {  // refused: there is no such text any more
    --announced_;
    return true;
  }
  ++asked_;
  if (why == DMLERR_DATAACKTIMEOUT || why == DMLERR_EXECACKTIMEOUT) {
    state_ = DigitLink::Failed;
    return false;
  }
  // The next announcement was taken for the answer, which comes by itself later.
  announced();
  return true;
}

void DdeConversation::announced() { announced_ = std::min(announced_ + 1, kMostAnnounced); }

void DdeConversation::take(HDDEDATA data) {
  char text[kLongestItem + 1] = "";
  DdeGetData(data, reinterpret_cast<BYTE*>(text), kLongestItem, 0);
  announced_ = std::max(announced_ - 1, 0);
  state_ = DigitLink::Linked;
  if (!stop_) mail_->post(rx_, text);
}

/// Not every system tells when a server has died.
bool DdeConversation::alive() const {
  CONVINFO info{};
  info.cb = sizeof info;
  if (!DdeQueryConvInfo(conversation_, static_cast<DWORD>(QID_SYNC), &info)) return false;
  return (info.wStatus & ST_CONNECTED) != 0 && IsWindow(info.hwndPartner);
}

void DdeConversation::drop(DigitLink state) {
  if (const HCONV gone = std::exchange(conversation_, nullptr)) {
    DdeDisconnect(gone);
    lost_ = true;
  }
  announced_ = asked_ = 0;
  state_ = state;
}

DdeConversation* DdeConversation::ownerOf(HCONV conversation) {
  CONVINFO info{};
  info.cb = sizeof info;
  if (!DdeQueryConvInfo(conversation, static_cast<DWORD>(QID_SYNC), &info)) return nullptr;
  return reinterpret_cast<DdeConversation*>(info.hUser);
}

HDDEDATA CALLBACK DdeConversation::callback(UINT type, UINT, HCONV conversation, HSZ, HSZ,
                                            HDDEDATA data, ULONG_PTR, ULONG_PTR) {
  if (type != XTYP_ADVDATA && type != XTYP_DISCONNECT) return nullptr;
  DdeConversation* const self = ownerOf(conversation);
  if (!self || self->conversation_ != conversation) return nullptr;
  if (type == XTYP_DISCONNECT) {
    self->conversation_ = nullptr;
    self->lost_ = true;
    self->announced_ = self->asked_ = 0;
    self->state_ = DigitLink::Waiting;
    return nullptr;
  }
  if (!data) {
    self->announced();
  } else if (self->asked_ > 0) {  // the late answer to a request
    --self->asked_;
    barrier("taking a late digit", [&] { self->take(data); });
  }
  return reinterpret_cast<HDDEDATA>(static_cast<UINT_PTR>(DDE_FACK));
}

}  // namespace kelvane::win32
