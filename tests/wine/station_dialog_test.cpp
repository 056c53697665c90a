#include "win32/station_dialog.h"

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "base/safe_file.h"
#include "tests/fakes/bare_frequencies.h"
#include "tests/fakes/bare_receivers.h"
#include "ui/control_ids.h"

namespace kelvane::win32 {
namespace {

namespace fs = std::filesystem;

struct NoFiles : FileDialogs, MessageBoxes {
  std::optional<std::string> open(const FileRequest&) override { return std::nullopt; }
  std::optional<std::string> save(const FileRequest&) override { return std::nullopt; }
  Choice show(const std::string&, const std::string&, Buttons) override { return Choice::Cancel; }
};

/// What the system sends when a file was dropped; the window frees it.
HDROP dropOf(const std::wstring& file) {
  const std::size_t bytes = sizeof(DROPFILES) + (file.size() + 2) * sizeof(wchar_t);
  const HGLOBAL memory = GlobalAlloc(GHND, bytes);
  auto* const head = static_cast<DROPFILES*>(GlobalLock(memory));
  head->pFiles = sizeof(DROPFILES);
  head->fWide = TRUE;
  std::memcpy(head + 1, file.c_str(), file.size() * sizeof(wchar_t));
  GlobalUnlock(memory);
  return static_cast<HDROP>(memory);
}

TEST(StationWindow, TakesAFileThatIsDroppedOnItAndShowsItFirst) {
  const fs::path folder = fs::temp_directory_path() / "kelvane-dropped";
  fs::create_directories(folder);
  writeFileSafely(folder / "theirs.csv", "kHz,Station\n648,Quill\n");
  fakes::BareReceivers receivers;
  fakes::BareFrequencies frequencies;
  NoFiles nobody;
  FileFlows files(nobody, nobody);
  ScreenColours colours;
  std::unique_ptr<StationDialog> dialog;
  StationEditor* shown = nullptr;
  StationEditor editor({receivers, frequencies, files, nobody, folder,
                        std::make_shared<FileSteps>(), [](Hz, Setting, Setting) { return true; },
                        [] { return Index{0}; },
                        [&] {
                          dialog = std::make_unique<StationDialog>(nullptr, *shown, colours);
                          dialog->present();
                        }});
  shown = &editor;
  editor.open();
  while (!editor.store().ready()) editor.deliver();
  SendMessageW(dialog->window(), WM_DROPFILES,
               reinterpret_cast<WPARAM>(dropOf((folder / "theirs.csv").wstring())), 0);
  ASSERT_TRUE(editor.import());
  while (editor.import()->busy()) editor.deliver();
  EXPECT_EQ(editor.import()->plan().adds, 1u) << editor.import()->words();
  EXPECT_EQ(editor.table().rows(), 0u) << "nothing is taken in unasked";
  editor.takeIn();
  EXPECT_EQ(editor.table().rows(), 1u);
  editor.close();
  EXPECT_EQ(dialog->window(), nullptr);
  editor.end();
  fs::remove_all(folder);
}

}  // namespace
}  // namespace kelvane::win32
