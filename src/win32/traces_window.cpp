#include "win32/traces_window.h"

#include <oleacc.h>
#include <windowsx.h>

#include <algorithm>
#include <array>

#include "gui/win32/accessible.h"
#include "gui/win32/window_barrier.h"
#include "ui/control_ids.h"
#include "ui/key_codes.h"
#include "win32/paint.h"
#include "win32/png.h"
#include "win32/text.h"

namespace kelvane::win32 {

namespace {

constexpr wchar_t kPlotClass[] = L"KelvaneTracePlot";
constexpr int kTracesWidth = 990, kTracesHeight = 480;
constexpr int kTraceButton = 26, kTraceGap = 6, kTraceEdge = 8, kLineHeight = 15;
/// What is compared changes with each second.
constexpr ULONGLONG kResultsTime = 500;

struct ButtonRow {
  int id, width;
  const char* text;
  const char* tip;
};
constexpr std::array kUpperButtons{
    ButtonRow{id::TraceShorter, 74, "S&horter", "Show a shorter time (-)"},
    ButtonRow{id::TraceLonger, 74, "&Longer", "Show a longer time (+)"},
    ButtonRow{id::TraceBack, 60, "&Back", "Back in time (Page Up)"},
    ButtonRow{id::TraceOn, 60, "&On", "On in time (Page Down)"},
    ButtonRow{id::TracePause, 74, "Pa&use", "Let the picture stand, and run on (Space)"},
    ButtonRow{id::TraceScale, 110, "&Auto scale", "Let the levels choose the scale"},
    ButtonRow{id::TracePeak, 64, "&Peak", "Show the rolling peak"},
    ButtonRow{id::TraceMean, 64, "&Mean", "Show the rolling mean"},
};
constexpr std::array kLowerButtons{
    ButtonRow{id::TraceReference, 130, "&Compare",
              "The receiver that the others are compared with"},
    ButtonRow{id::TraceCompared, 90, "O&ver 60 s", "For how long the levels are compared"},
    ButtonRow{id::TraceOffsetLess, 74, "Offset &-",
              "Take 0.5 dB from the levels of the receiver that is compared (Ctrl+Down)"},
    ButtonRow{id::TraceOffsetMore, 74, "Offset &+",
              "Add 0.5 dB to the levels of the receiver that is compared (Ctrl+Up)"},
    ButtonRow{id::TraceCopy, 100, "Copy r&esult", "Put the comparison on the clipboard (Ctrl+C)"},
    ButtonRow{id::TraceRecord, 84, "&Record", "Write every level to a file for each day"},
    ButtonRow{id::TraceCsv, 84, "&Save CSV", "Save the levels that are shown"},
    ButtonRow{id::TracePng, 84, "Save P&NG", "Save the picture"},
};

ViewWindow::Design tracesDesign() {
  return {L"KelvaneTraces", "Level traces", kTracesWidth, kTracesHeight, 760, 300};
}

}  // namespace

void Canvas::release() {
  if (!dc_) return;
  SelectObject(dc_, previous_);
  DeleteObject(bitmap_);
  DeleteDC(dc_);
  dc_ = nullptr;
}

void Canvas::resize(int width, int height) {
  release();
  width_ = std::max(width, 1);
  height_ = std::max(height, 1);
  BITMAPINFO info{};
  info.bmiHeader = {sizeof info.bmiHeader, width_, -height_, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  dc_ = CreateCompatibleDC(nullptr);
  void* data = nullptr;
  bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &data, nullptr, 0);
  data_ = static_cast<std::uint32_t*>(data);
  previous_ = SelectObject(dc_, bitmap_);
  SetBkMode(dc_, TRANSPARENT);
}

std::span<std::uint32_t> Canvas::pixels() const {
  const auto count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
  return {data_, data_ ? count : 0};
}

TracesWindow::TracesWindow(HWND owner, Traces& traces)
    : ViewWindow(owner, tracesDesign(), [&traces] { return traces.colours(); }),
      traces_(traces),
      part_(*this, {window(), kPlotClass, IDC_CROSS, L"Levels of the receivers", WS_TABSTOP,
                    id::TracePlot}),
      plot_(part_.window()) {
  giveRole(plot_, ROLE_SYSTEM_GRAPHIC);
  speakAs(plot_, "Levels of the receivers");
  makeButtons();
}

void TracesWindow::makeButtons() {
  for (int i = 0; i < kMostReceivers; ++i)
    addButton(id::TraceReceiver + i, "", "Show or hide this receiver's trace");
  for (const ButtonRow& row : kUpperButtons) addButton(row.id, row.text, row.tip);
  for (const ButtonRow& row : kLowerButtons) addButton(row.id, row.text, row.tip);
  CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_OWNERDRAW, 0, 0, 0, 0, window(),
                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(id::TraceResults)),
                  GetModuleHandleW(nullptr), nullptr);
}

void TracesWindow::layOut(int width, int height) {
  const int step = px(kTraceButton + kTraceGap), edge = px(kTraceEdge);
  const int shown = std::max(traces_.receivers(), 1);
  const int each = std::min(px(140), (width - 2 * edge) / shown);
  for (int i = 0; i < kMostReceivers; ++i) {
    ShowWindow(item(id::TraceReceiver + i), i < traces_.receivers() ? SW_SHOWNA : SW_HIDE);
    place(id::TraceReceiver + i, edge + i * each, px(kTraceGap), each - px(4), px(kTraceButton));
  }
  const auto row = [&](const auto& buttons, int top) {
    int left = edge;
    for (const ButtonRow& button : buttons) {
      place(button.id, left, top, px(button.width), px(kTraceButton));
      left += px(button.width + kTraceGap);
    }
  };
  row(kLowerButtons, height - step);
  row(kUpperButtons, height - 2 * step);
  const int lines = std::max(static_cast<int>(results_.size()), 2);
  const int results = height - 2 * step - px(kTraceGap) - px(kLineHeight) * lines;
  place(id::TraceResults, edge, results, width - 2 * edge, px(kLineHeight) * lines);
  place(id::TracePlot, 0, step + px(kTraceGap), width,
        std::max(results - step - 2 * px(kTraceGap), px(40)));
  RECT area{};
  GetClientRect(plot_, &area);
  canvas_.resize(area.right, area.bottom);
  stale_ = true;
}

void TracesWindow::relayOut() {
  RECT area{};
  GetClientRect(window(), &area);
  layOut(area.right, area.bottom);
  InvalidateRect(window(), nullptr, FALSE);
}

void TracesWindow::refresh() {
  if (std::exchange(receivers_, traces_.receivers()) != traces_.receivers()) relayOut();
  showButtons();
  showResults();
  const Traces::Version now = traces_.version(plotWidth());
  if (!stale_ && now == drawn_) return;
  drawn_ = now;
  stale_ = false;
  drawPlot();
  InvalidateRect(plot_, nullptr, FALSE);
}

void TracesWindow::showButtons() {
  for (Index rx = 0; rx < traces_.receivers(); ++rx) {
    const double offset = traces_.offset(rx);
    std::string text = "&" + std::to_string(rx + 1) + " " + traces_.name(rx);
    if (offset != 0) text += " " + signedDecibels(offset);
    setToggle(id::TraceReceiver + rx, text, traces_.visible(rx));
  }
  setButton(id::TracePause, traces_.paused() ? "R&un" : "Pa&use");
  setButton(id::TraceScale, traces_.automaticScale() ? "&Auto scale" : "Fixed sc&ale");
  setToggle(id::TracePeak, "&Peak", traces_.showsPeak());
  setToggle(id::TraceMean, "&Mean", traces_.showsMean());
  const bool any = traces_.receivers() > 0;
  setButton(id::TraceReference, any ? "&Compare " + traces_.name(traces_.reference()) : "&Compare");
  setButton(id::TraceCompared, "O&ver " + traces_.comparedWords());
  setToggle(id::TraceRecord, "&Record", traces_.recording());
}

void TracesWindow::showResults() {
  const ULONGLONG now = GetTickCount64();
  const std::string status = traces_.statusLine();
  const bool told = results_.size() > 0 && results_.back() == status;
  if (now - resultsAt_ < kResultsTime && told && !stale_) return;
  resultsAt_ = now;
  std::vector<std::string> lines = traces_.results();
  lines.push_back(status);
  if (lines == results_) return;
  const bool countChanged = lines.size() != results_.size();
  results_ = std::move(lines);
  std::string text;
  for (const std::string& line : results_) text += (text.empty() ? "" : "\r\n") + line;
  SetWindowTextW(item(id::TraceResults), wide(text).c_str());
  if (countChanged) relayOut();
  InvalidateRect(item(id::TraceResults), nullptr, FALSE);
}

void TracesWindow::paint(HWND window) {
  const Painting on(window);
  on.fill(on.area(), resolved(colours().window));
}

void TracesWindow::command(int id) {
  if (id >= id::TraceReceiver && id < id::TraceReceiver + kMostReceivers)
    traces_.toggleVisible(static_cast<Index>(id - id::TraceReceiver));
  switch (id) {
    case id::TraceShorter:
      traces_.zoom(-1);
      break;
    case id::TraceLonger:
      traces_.zoom(1);
      break;
    case id::TraceBack:
      traces_.scroll(-1);
      break;
    case id::TraceOn:
      traces_.scroll(1);
      break;
    case id::TracePause:
      traces_.pause(!traces_.paused());
      break;
    case id::TraceScale:
      traces_.toggleScale();
      break;
    case id::TracePeak:
      traces_.togglePeak();
      break;
    case id::TraceMean:
      traces_.toggleMean();
      break;
    case id::TraceReference:
      traces_.nextReference();
      break;
    case id::TraceCompared:
      traces_.nextCompared();
      break;
    case id::TraceOffsetLess:
      traces_.changeOffset(traces_.reference(), -0.5);
      break;
    case id::TraceOffsetMore:
      traces_.changeOffset(traces_.reference(), 0.5);
      break;
    case id::TraceCopy:
      traces_.copyResults();
      break;
    case id::TraceRecord:
      traces_.toggleRecording();
      break;
    case id::TraceCsv:
      traces_.saveCsv();
      break;
    case id::TracePng:
      savePicture();
      break;
    default:
      break;
  }
  refresh();
}

void TracesWindow::savePicture() {
  const std::string name = traces_.askPictureName();
  if (name.empty()) return;
  drawPlot();
  GdiFlush();
  std::string why;
  std::string bytes = pngOf(canvas_.pixels(), canvas_.width(), canvas_.height(), why);
  traces_.savePicture(name, std::move(bytes), why);
}

bool TracesWindow::keyDown(int keyCode, int shift) {
  const bool ctrl = shift == key::CtrlHeld;
  const bool onPlot = GetFocus() == plot_;
  if (shift != 0 && !ctrl) return false;
  switch (keyCode) {
    case key::Left:
    case key::Right:
      if (!onPlot) return false;
      traces_.moveCursor((keyCode == key::Left ? -1 : 1) * (ctrl ? 20 : 1), plotWidth());
      break;
    case key::Up:
    case key::Down:
      if (!onPlot) return false;
      if (ctrl) {
        traces_.changeOffset(traces_.reference(), keyCode == key::Up ? 0.1 : -0.1);
      } else {
        traces_.shiftScale(keyCode == key::Up ? 1 : -1);
      }
      break;
    case key::PageUp:
    case key::PageDown:
      traces_.scroll(keyCode == key::PageUp ? -1 : 1);
      break;
    case key::End:
      traces_.pause(false);
      break;
    case 'C':
      if (!ctrl) return false;
      traces_.copyResults();
      break;
    default:
      return false;
  }
  refresh();
  return true;
}

bool TracesWindow::keyPress(int character) {
  if (character >= '1' && character <= '8') {
    traces_.toggleVisible(static_cast<Index>(character - '1'));
  } else if (character == '+' || character == '-') {
    traces_.zoom(character == '+' ? 1 : -1);
  } else if (character == ' ' && GetFocus() == plot_) {
    traces_.pause(!traces_.paused());
  } else {
    return false;
  }
  refresh();
  return true;
}

ViewWindow::Frame TracesWindow::startFrame(Global::Point owner) const {
  const WindowPlace place = traces_.startPlace(owner);
  return {place.at, place.width, place.height};
}

void TracesWindow::leftAt(const Frame& frame) {
  traces_.leftAt({frame.at, frame.width, frame.height});
}

void TracesWindow::pointAt(LPARAM lParam) {
  traces_.pointAt(GET_X_LPARAM(lParam) - static_cast<int>(plotArea().left), plotWidth());
  refresh();
}

bool TracesWindow::plotMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_PAINT: {
      PAINTSTRUCT paint;
      const HDC dc = BeginPaint(plot_, &paint);
      const RECT& seen = paint.rcPaint;
      BitBlt(dc, seen.left, seen.top, seen.right - seen.left, seen.bottom - seen.top, canvas_.dc(),
             seen.left, seen.top, SRCCOPY);
      EndPaint(plot_, &paint);
      return true;
    }
    case WM_ERASEBKGND:
      result = 1;
      return true;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      stale_ = true;
      refresh();
      return true;
    case WM_LBUTTONDOWN:
      SetFocus(plot_);
      pointAt(lParam);
      return true;
    case WM_MOUSEMOVE:
      if (wParam & MK_LBUTTON) pointAt(lParam);
      return true;
    case WM_RBUTTONUP:
      traces_.pointAt(-1, plotWidth());
      refresh();
      return true;
    case WM_MOUSEWHEEL:
      traces_.zoom(GET_WHEEL_DELTA_WPARAM(wParam) > 0 ? -1 : 1);
      refresh();
      return true;
    default:
      return partMessage(message, wParam);
  }
}

}  // namespace kelvane::win32
