#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "companions/data_log.h"
#include "overview/traces.h"
#include "own_list/station_editor.h"
#include "tests/fakes/channel_rig.h"
#include "tests/fakes/failing_steps.h"

namespace kelvane {
namespace {

using fakes::FailingSteps;

/// Each export of the panel onto a full disk, where the operator has the old file replaced.
TEST(FailedExports, LeaveTheFileThatTheyWereToReplace) {
  fakes::ChannelRig rig;
  const auto disk = std::make_shared<FailingSteps>(FailingSteps::How::Fail);
  rig.disk = disk;
  rig.open();
  for (const char key : {'g', 'y'}) rig.type(std::string(1, key));
  rig.press(key::F8);
  rig.fileDialogs.choice = Choice::Ok;
  const auto fails = [&](const std::string& name, const std::function<void()>& begin,
                         const std::function<std::string()>& words) {
    writeFileSafely(rig.file(name), "the old one");
    rig.fileDialogs.script = {pathText(rig.file(name))};
    disk->arm(1, name);  // what else is written meanwhile comes through
    begin();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (words().find("the disk is full") == std::string::npos) {
      ASSERT_LT(std::chrono::steady_clock::now(), end) << name << ": " << words();
      rig.finishWriting();
      rig.panel->workEnded();
      rig.run(milliseconds(100));
    }
    EXPECT_EQ(rig.content(rig.file(name)), "the old one") << words();
    EXPECT_FALSE(std::filesystem::exists(rig.file(name + ".bak"))) << name;
  };
  DataLog& log = *rig.dialogs.log;
  StationEditor& stations = *rig.dialogs.stations;
  Traces& traces = *rig.dialogs.traces;
  fails(
      "channels.txt", [&] { rig.editor().clicked(id::ChnExport); }, [&] { return rig.words(); });
  for (const char* name : {"log.csv", "log.adi"})
    fails(
        name, [&] { log.Export_Click(); }, [&] { return log.view().Notice; });
  fails(
      "levels.csv", [&] { traces.saveCsv(); }, [&] { return traces.statusLine(); });
  fails(
      "picture.png", [&] { traces.savePicture(traces.askPictureName(), "pixels", ""); },
      [&] { return traces.statusLine(); });
  stations.addEmpty();
  rig.run(milliseconds(100));
  fails(
      "list.csv", [&] { stations.exportAs(formats::Format::Own); },
      [&] { return stations.view().status; });
}

}  // namespace
}  // namespace kelvane
