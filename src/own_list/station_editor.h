#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/work_beside.h"
#include "components/ambrel/formats/list_format.h"
#include "contract/components.h"
#include "grid/grid.h"
#include "own_list/station_grid.h"
#include "own_list/station_import.h"
#include "ui/file_flows.h"
#include "ui/message_boxes.h"

namespace kelvane {

/// What the window of the operator's list shows beside its grid.
struct StationView {
  std::string status;
  std::vector<std::string> groups;  ///< those that there are, in order
  bool open = false;
  bool ready = false;  ///< the list was read and can be edited
  bool canUndo = false, canRedo = false;
  bool importing = false;  ///< an import is looked at

  bool operator==(const StationView&) const = default;
};

/// What that window stands on.
struct StationServices {
  ReceiverComponent& receiver;
  FrequencyComponent& frequency;
  FileFlows& files;
  MessageBoxes& boxes;
  std::filesystem::path folder;  ///< the instance's own
  std::shared_ptr<FileSteps> disk;
  /// Tunes the shown receiver, with mode and filter; false where it cannot.
  std::function<bool(Hz, Setting mode, Setting filter)> tune;
  std::function<Index()> shown;     ///< the receiver that the panel shows
  std::function<void()> show;       ///< opens the window, or brings it to the front
  std::function<void()> wake = {};  ///< asks, from any thread, for deliver() soon
};

/// The window `My stations`: the operator's own list in a grid, its import and export. The list is
/// kept by itself, soon after each edit. All calls come on the user-interface thread; what came of
/// work beside the window is taken over by deliver(), whether the window is open or not.
class StationEditor {
 public:
  explicit StationEditor(const StationServices& services);
  ~StationEditor();

  const StationView& view() const { return view_; }
  Grid& grid() { return grid_; }
  StationGrid& table() { return table_; }
  lists::OwnStore& store() { return store_; }
  /// Who shows the window; called when anything of it changed.
  void setListener(std::function<void()> listener) { listener_ = std::move(listener); }

  void open();
  void close();
  /// Takes the shown receiver's present setting into the list, with the name of the station that is
  /// known there, else of the band, and shows it. A frequency that is not known is not taken.
  void takeShown();
  void setFilter(StationFilter filter);

  void tuneTo();
  void addEmpty();
  void remove();
  void undo();
  void redo();
  /// Has the operator choose a list of another program; or takes the one that he dropped.
  void importChosen();
  void importFile(const std::filesystem::path& file);
  StationImport* import() { return import_.get(); }
  Grid& importGrid() { return *importGrid_; }
  /// Takes the import into the list, as one step; or drops it.
  void takeIn();
  void dropImport();
  /// Writes what is marked, or else what is shown, in the form of another program.
  void exportAs(formats::Format format);

  void deliver();
  /// The program ends: returns when the list is in its file. Answers what the operator has to be
  /// told; mostly nothing.
  Result<> end();
  /// Writes the list as it is into a file of the operator's choice. Waits; answers why it could
  /// not.
  Result<> saveTo(const std::string& file);

 private:
  void listChanged();
  void say(std::string words);
  void refresh();
  void select(StationGrid::Id id);
  void add(const lists::Entry& entry);
  lists::Entries chosenEntries() const;
  void letImportsGo();

  StationServices services_;
  StationView view_;
  lists::OwnStore store_;
  StationGrid table_;
  Grid grid_;
  std::function<void()> listener_;
  std::string lastMessage_;            ///< what happened last
  std::vector<lists::Entry> waiting_;  ///< to be added as soon as the list was read
  std::unique_ptr<StationImport> import_;
  std::unique_ptr<Grid> importGrid_;
  std::uint64_t importFor_ = 0;  ///< version of the list that the import was planned for
  std::uint64_t grouped_ = ~std::uint64_t{0};  ///< version of the list whose groups are shown
  /// Imports that were dropped, until they are let go beside the window.
  std::vector<std::unique_ptr<StationImport>> leaving_;
  struct Prepared {
    formats::Format format;
    std::size_t count = 0;
    formats::Writing writing = {};
  };
  void offerExport(const std::shared_ptr<const Prepared>& prepared);
  void exported(std::string words);

  bool exporting_ = false;
  WorkBeside work_;
};

}  // namespace kelvane
