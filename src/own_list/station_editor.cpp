#include "own_list/station_editor.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "base/barrier.h"
#include "base/safe_file.h"
#include "base/text.h"
#include "components/ambrel/lists/entry_texts.h"

namespace kelvane {

namespace {

/// A known frequency counts for the name up to so far away, as on the panel.
constexpr Hz kNameNear = 250;

std::string extensionOf(std::string_view fileName) {
  return std::string(fileName.substr(fileName.rfind('.') + 1));
}

std::string stemOf(std::string_view fileName) {
  return std::string(fileName.substr(0, fileName.rfind('.')));
}

}  // namespace

StationEditor::StationEditor(const StationServices& services)
    : services_(services),
      store_(services.folder / lists::kOwnListName, services.disk, services.wake),
      table_(
          store_,
          {[this](StationGrid::Id id) {
             const lists::EntryPtr& entry = store_.list().at(id);
             if (entry && !services_.tune(entry->frequency, entry->mode, entry->width))
               say("The receiver cannot tune to " + lists::khzText(entry->frequency) + " kHz.");
           },
           [this] { remove(); }, [this] { undo(); }, [this] { redo(); }, [this] { listChanged(); },
           [this](const std::string& why) { say("It stays as it was: " + why + "."); }}),
      grid_(table_, StationGrid::columns()),
      work_(services.wake) {
  table_.currentRow = [this] { return grid_.current().row; };
  grid_.markSorted(table_.sortedBy());
  store_.changed = [this] { services_.frequency.ReadFrqOwn(); };
}

StationEditor::~StationEditor() = default;

void StationEditor::open() {
  view_.open = true;
  store_.read();
  refresh();
  services_.show();
}

void StationEditor::close() {
  grid_.commit();
  view_.open = false;
  if (listener_) listener_();
}

void StationEditor::say(std::string words) {
  lastMessage_ = std::move(words);
  refresh();
}

void StationEditor::refresh() {
  const StationGrid::Id current =
      grid_.current().row < table_.rows() ? table_.shown()[grid_.current().row] : ~0u;
  if (table_.follow()) {
    const GridRow row = table_.rowOf(current);
    if (row < table_.rows() && row != grid_.current().row && !grid_.editing())
      grid_.select({row, grid_.current().column});
    grid_.markSorted(table_.sortedBy());
  }
  grid_.lock(!store_.ready());
  grid_.refresh();
  const lists::OwnList& list = store_.list();
  view_.ready = store_.ready();
  view_.canUndo = list.canUndo();
  view_.canRedo = list.canRedo();
  view_.importing = import_ != nullptr;
  if (std::exchange(grouped_, list.version()) != list.version()) {
    std::set<std::string> groups;
    for (StationGrid::Id id = 0; id < list.end(); ++id) {
      if (list.at(id) && !list.at(id)->group.empty()) groups.insert(list.at(id)->group);
    }
    view_.groups.assign(groups.begin(), groups.end());
  }
  view_.status =
      std::to_string(table_.rows()) + " of " + std::to_string(list.count()) + " stations";
  if (table_.marked() > 0) {
    const std::size_t hidden = table_.marked() - table_.markedShown().size();
    view_.status += ", " + std::to_string(table_.marked()) + " marked";
    if (hidden > 0) view_.status += " (" + std::to_string(hidden) + " of them not shown)";
  }
  for (const std::string& words : {lastMessage_, store_.lastAccess().reason(), store_.unread()}) {
    if (!words.empty()) view_.status += ". " + words;
  }
  if (!store_.ready() && store_.lastAccess()) view_.status = "Reading...";
  if (listener_) listener_();
}

void StationEditor::listChanged() {
  lastMessage_.clear();
  store_.deliver();
  refresh();
}

void StationEditor::select(StationGrid::Id id) {
  table_.follow();
  if (table_.rowOf(id) == table_.rows()) {
    table_.setFilter({});
    table_.follow();
  }
  if (const GridRow row = table_.rowOf(id); row < table_.rows())
    grid_.select({row, StationGrid::Name});
}

void StationEditor::add(const lists::Entry& entry) {
  if (!store_.ready()) {
    waiting_.push_back(entry);
    return store_.read();
  }
  const StationGrid::Id id = store_.list().end();
  store_.list().edit({{id, std::make_shared<const lists::Entry>(entry)}});
  grid_.refresh();
  select(id);
  listChanged();
}

void StationEditor::takeShown() {
  const Index rx = services_.shown();
  lists::Entry entry;
  entry.frequency = services_.receiver.GetRxFrequency(rx, kTuned);
  if (entry.frequency > 0) {
    entry.mode = services_.receiver.GetRxMode(rx);
    entry.width = std::max<Setting>(services_.receiver.GetRxFilter(rx), 0);
    if (services_.frequency.FindRxKnownFrequency(entry.frequency, kNameNear))
      entry.name = services_.frequency.GetFrqKnownName();
    else
      entry.name = services_.frequency.GetFrqBandName();
    add(entry);
    lastMessage_ = lists::khzText(entry.frequency) + " kHz is in the list now.";
  } else {
    lastMessage_ = "The receiver has not told its frequency.";
  }
  open();
}

void StationEditor::setFilter(StationFilter filter) {
  table_.setFilter(std::move(filter));
  refresh();
}

void StationEditor::tuneTo() {
  grid_.commit();
  table_.recall(grid_.current().row);
}

void StationEditor::addEmpty() {
  lists::Entry entry;
  const GridRow row = grid_.current().row;
  entry.frequency =
      row < table_.rows() ? store_.list().at(table_.shown()[row])->frequency : 1'000'000;
  entry.group = table_.filter().group;
  add(entry);
}

void StationEditor::remove() {
  grid_.commit();
  lists::OwnList::Edits edits;
  for (const StationGrid::Id id : table_.chosen(grid_.current().row))
    edits.emplace_back(id, nullptr);
  if (edits.empty() || !store_.ready()) return;
  store_.list().edit(edits);
  listChanged();
  say(std::to_string(edits.size()) + (edits.size() == 1 ? " station was" : " stations were") +
      " removed; Undo brings them back.");
}

void StationEditor::undo() {
  grid_.cancel();
  if (!store_.ready() || !store_.list().undo()) return;
  listChanged();
  if (!store_.list().lastStep().empty()) select(store_.list().lastStep().front());
}

void StationEditor::redo() {
  grid_.cancel();
  if (!store_.ready() || !store_.list().redo()) return;
  listChanged();
  if (!store_.list().lastStep().empty()) select(store_.list().lastStep().front());
}

void StationEditor::importChosen() {
  if (const auto name = services_.files.openFile("*", "*")) importFile(pathFromText(*name));
}

void StationEditor::importFile(const std::filesystem::path& file) {
  grid_.commit();
  if (!store_.ready()) return say("The list has not been read yet.");
  if (import_) dropImport();
  lists::Entries own;
  for (StationGrid::Id id = 0; id < store_.list().end(); ++id) own.push_back(store_.list().at(id));
  importFor_ = store_.list().version();
  import_ = std::make_unique<StationImport>(file, services_.disk, std::move(own), services_.wake);
  importGrid_ = std::make_unique<Grid>(*import_, StationImport::columns());
  importGrid_->lock(true);
  lastMessage_.clear();
  refresh();
}

void StationEditor::takeIn() {
  if (!import_ || !import_->ready()) return;
  // What was planned was planned for the list as it was then.
  if (store_.list().version() != importFor_) {
    const std::filesystem::path file = import_->file();
    importFile(file);
    return say("The list changed meanwhile, and the file is looked at anew.");
  }
  const lists::OwnList::Edits edits = import_->plan().edits(store_.list().end());
  const std::string words = import_->plan().words();
  store_.list().edit(edits);
  dropImport();
  listChanged();
  say("The import is done: " + words + " One Undo takes it all back.");
}

void StationEditor::dropImport() {
  // Until its window is closed they are shown there.
  std::unique_ptr<StationImport> import = std::move(import_);
  std::unique_ptr<Grid> grid = std::move(importGrid_);
  refresh();
  grid.reset();
  if (!import) return;
  import->drop();
  leaving_.push_back(std::move(import));
  letImportsGo();
}

/// A long file is not waited for, and a million stations are let go beside the window.
void StationEditor::letImportsGo() {
  for (std::unique_ptr<StationImport>& import : leaving_) {
    if (!import) continue;
    import->deliver();
    if (import->busy()) continue;
    std::shared_ptr<StationImport> gone = std::move(import);
    work_.start("letting an import go",
                [gone = std::move(gone)]() mutable {
                  gone.reset();
                  return WorkBeside::Done();
                },
                {});
  }
  std::erase(leaving_, nullptr);
}

lists::Entries StationEditor::chosenEntries() const {
  lists::Entries entries;
  const std::vector<StationGrid::Id> marked = table_.markedShown();
  const auto& ids = marked.empty() ? table_.shown() : marked;
  for (const StationGrid::Id id : ids) {
    if (store_.list().at(id)) entries.push_back(store_.list().at(id));
  }
  return entries;
}

void StationEditor::exportAs(formats::Format format) {
  grid_.commit();
  if (exporting_) return say("A list is being written already.");
  lists::Entries entries = chosenEntries();
  if (entries.empty()) return say("There is nothing to export.");
  work_.start(
      "preparing a list",
      [this, entries = std::move(entries), format]() -> WorkBeside::Done {
        const auto prepared = std::make_shared<const Prepared>(
            Prepared{format, entries.size(), formats::writeList(entries, format)});
        return [this, prepared] { offerExport(prepared); };
      },
      [this](const std::string& why) { exported("The list was not written: " + why); });
  exporting_ = true;
  say("Preparing the list ...");
}

/// Says what the form cannot hold, has a file chosen, and begins to write it.
void StationEditor::offerExport(const std::shared_ptr<const Prepared>& prepared) {
  const formats::FormatName& form = formats::nameOf(prepared->format);
  if (!prepared->writing.losses.empty()) {
    std::string words = "This form cannot hold everything:\n";
    for (const std::string& loss : prepared->writing.losses) words += "\n" + loss;
    if (services_.boxes.show(words + "\n\nWrite the list all the same?", std::string(form.name),
                             Buttons::OkCancel) != Choice::Ok)
      return exported("Nothing was written.");
  }
  const auto chosen = services_.files.saveFile(stemOf(form.fileName), extensionOf(form.fileName));
  if (!chosen) return exported({});
  work_.start(
      "writing a list",
      [this, prepared, name = *chosen, replaced = services_.files.takeReplaced(),
       disk = services_.disk]() -> WorkBeside::Done {
        const Result<> how =
            writeInPlaceOf(replaced, pathFromText(name), prepared->writing.text, *disk);
        const bool one = prepared->count == 1;
        std::string words = how ? std::to_string(prepared->count) +
                                      (one ? " station was" : " stations were") + " written to " +
                                      name + "."
                                : "The list was not written: " + how.reason();
        return [this, words] { exported(words); };
      },
      [this](const std::string& why) { exported("The list was not written: " + why); });
}

/// Whatever came of it.
void StationEditor::exported(std::string words) {
  exporting_ = false;
  say(std::move(words));
}

void StationEditor::deliver() {
  bool news = store_.deliver();
  if (store_.ready() && !waiting_.empty()) {
    for (const lists::Entry& entry : std::exchange(waiting_, {})) add(entry);
    news = true;
  }
  news = work_.deliver() || news;
  letImportsGo();
  if (import_ && import_->deliver()) {
    importGrid_->refresh();
    news = true;
  }
  if (news) refresh();
}

Result<> StationEditor::end() {
  grid_.commit();
  // What was to be added before the list was read is added now.
  if (!waiting_.empty()) {
    store_.finish();
    deliver();
  }
  store_.finish();
  work_.wait();
  if (!store_.unsaved() && waiting_.empty()) return {};
  return store_.lastAccess();
}

Result<> StationEditor::saveTo(const std::string& file) {
  return writeFileSafely(pathFromText(file), lists::ownText(store_.list().text()), *services_.disk);
}

}  // namespace kelvane
