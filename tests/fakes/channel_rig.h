#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "companions/channel_editor.h"
#include "tests/fakes/panel_rig.h"
#include "tests/fakes/recording_receiver.h"
#include "ui/key_codes.h"

namespace kelvane::fakes {

/// The panel with the operator before its channel window.
class ChannelRig : public PanelRig {
 public:
  static constexpr std::string_view kReceivers =
      "[Receiver 1]\nName=A\nChannels=0-9\nChannelTime=10\nFrequency=7000000\nAgc=slow fast\n"
      "[Receiver 2]\nName=B\nChannels=1-120\nChannelSkip=no\nModes=AM USB\nAgc=slow fast\n"
      "Bfo=none\nFrequency=7000000\n"
      "[Receiver 3]\nName=C\nChannels=none\nFrequency=7000000\n"
      "[Receiver 4]\nName=D\nChannels=1-4\nAgc=none\nFrequency=7000000\n";

  explicit ChannelRig(std::string_view receivers = kReceivers) : PanelRig(std::string(receivers)) {
    auto recording = std::make_unique<RecordingReceiver>(sondrel.core);
    component = recording.get();
    wrapped = std::move(recording);
  }

  /// Starts the panel, shows this receiver and opens the window; its channels are read.
  ChannelEditor& open(Index rx = 0) {
    if (!panel) start();
    panel->tabClicked(rx);
    type("s");
    run(milliseconds(3000));
    component->told("");
    return editor();
  }
  ChannelEditor& editor() const { return *dialogs.channels; }
  Grid& grid() const { return editor().grid(); }
  const ChannelView& channelView() const { return editor().view(); }
  const std::string& words() const { return channelView().Status.text; }
  void pressButton(int control) {
    editor().clicked(control);
    run(milliseconds(500));
  }
  /// Real keys in the grid.
  void gridKey(int keyCode, int shift = 0) {
    grid().keyDown(keyCode, shift);
    run(milliseconds(20));
  }
  void gridType(std::string_view characters) {
    for (const char character : characters) {
      const auto code = static_cast<char32_t>(static_cast<unsigned char>(character));
      if (!grid().keyPress(code) && grid().editing()) grid().edited(grid().text() + character);
    }
  }
  /// Types a text into a cell, with Enter.
  void enter(GridRow row, int column, std::string_view text) {
    grid().select({row, column});
    gridType(text);
    gridKey(key::Return);
  }
  std::string cell(GridRow row, int column) const { return grid().table().cell(row, column); }
  /// All cells of a row, between blanks.
  std::string row(GridRow number) const {
    std::string text = cell(number, 0);
    for (int column = 1; column <= 6; ++column) text += " " + cell(number, column);
    return text;
  }

  std::filesystem::path file(const std::string& name) const { return sondrel.folder.path() / name; }
  static std::string content(const std::filesystem::path& path) {
    return readFile(path, 1 << 26).value_or("no file");
  }
  /// Has Import read a file with this content.
  void import(std::string_view text) {
    std::ofstream(file("in.txt"), std::ios::binary) << text;
    fileDialogs.script = {pathText(file("in.txt"))};
    pressButton(id::ChnImport);
  }
  /// Has Export write to this file.
  void exportTo(const std::string& name) {
    fileDialogs.script = {pathText(file(name))};
    editor().clicked(id::ChnExport);
    finishWriting();
  }

  RecordingReceiver* component;
};

}  // namespace kelvane::fakes
