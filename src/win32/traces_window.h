#pragma once

#include <string>
#include <vector>

#include "gui/win32/part_window.h"
#include "overview/traces.h"
#include "win32/view_window.h"

namespace kelvane::win32 {

/// A bitmap in memory whose pixels are ours to write, and which the system can draw texts into.
class Canvas {
 public:
  Canvas() = default;
  ~Canvas() { release(); }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  /// Makes it this large; what was in it is gone.
  void resize(int width, int height);
  HDC dc() const { return dc_; }
  /// Row after row from the top, each pixel 0x00RRGGBB.
  std::span<std::uint32_t> pixels() const;
  int width() const { return width_; }
  int height() const { return height_; }

 private:
  void release();

  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ previous_ = nullptr;
  std::uint32_t* data_ = nullptr;
  int width_ = 0, height_ = 0;
};

/// The traces on the screen: the plot, what compares its lines, and the buttons for all of it.
class TracesWindow : public ViewWindow {
 public:
  TracesWindow(HWND owner, Traces& traces);

 private:
  void layOut(int width, int height) override;
  void refresh() override;
  void paint(HWND window) override;
  void command(int id) override;
  bool keyDown(int keyCode, int shift) override;
  bool keyPress(int character) override;
  HWND startOfKeys() const override { return plot_; }
  Frame startFrame(Global::Point owner) const override;
  void leftAt(const Frame& frame) override;

  bool plotMessage(HWND plot, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  using PlotWindow = PartWindow<TracesWindow, &TracesWindow::plotMessage>;
  void makeButtons();
  void showButtons();
  void showResults();
  void relayOut();
  void savePicture();
  void pointAt(LPARAM lParam);

  // The plot; its own coordinates begin where the levels' words end.
  RECT plotArea() const;
  int plotWidth() const;
  void drawPlot();
  void drawGrid(const TraceFrame& frame, const RECT& area);
  void drawTraces(const TraceFrame& frame, const RECT& area);
  void drawMarks(const TraceFrame& frame, const RECT& area);
  void drawLegend(const TraceFrame& frame, const RECT& area);
  void drawCursor(const TraceFrame& frame, const RECT& area);
  void fill(const RECT& area, Colour colour);
  void write(const std::string& words, RECT area, Colour colour, UINT align);

  Traces& traces_;
  PlotWindow part_;
  HWND plot_;
  Canvas canvas_;
  std::vector<std::uint32_t> plotted_;  ///< the plot while its lines are drawn
  Traces::Version drawn_;
  std::vector<std::string> results_;
  ULONGLONG resultsAt_ = 0;
  std::string spoken_;
  int receivers_ = -1;
  bool stale_ = true;  ///< the canvas does not show what it should
};

}  // namespace kelvane::win32
