#pragma once

namespace kelvane::ambrel::id {

/// Ids of the controls of the component's windows, by which a program outside finds them. The tune
/// and close buttons are the system's own 1 and 2.
enum DialogId : int {
  Label = 3100,   // and whatever nobody looks for
  Status = 3101,  // what is shown, and what happened last, in words

  // The known frequencies: window class KelvaneKnownList
  Search = 3110,
  OnAir = 3111,
  Sort = 3112,
  Descending = 3113,
  Stations = 3114,
  Favourites = 3115,

  // The source of the database: window class KelvaneSource
  Lists = 3120,
  Details = 3121,
  Folder = 3122,
  Load = 3123,
  PutAside = 3124,
  OwnSets = 3125,
  OwnPlan = 3126,
  ReadAnew = 3127,

  // The database as tables: window class KelvaneDataView
  Table = 3130,
  FollowReceiver = 3131,
  Rows = 3132,
};

}  // namespace kelvane::ambrel::id
