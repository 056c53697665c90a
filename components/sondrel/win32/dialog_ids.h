#pragma once

namespace kelvane::sondrel::id {

/// Ids of the controls of the component's dialogs, by which a program outside finds them. OK and
/// Cancel are the system's own 1 and 2.
enum DialogId : int {
  Label = 3000,    // and whatever nobody looks for
  Problem = 3001,  // what is wrong, in words

  // The list of receivers: window class KelvaneDrivers
  Receivers = 3010,
  Remove = 3011,
  MoveUp = 3012,
  MoveDown = 3013,
  NewKind = 3014,
  Add = 3015,
  Name = 3016,
  Parameters = 3017,
  Value = 3018,
  Help = 3019,
  Test = 3020,
  Found = 3021,  // what a test found, or what a receiver's link did

  // One receiver: window class KelvaneReceiver
  Frequency = 3030,
  Tune = 3031,
  Step = 3032,
  StepDown = 3033,
  StepUp = 3034,
  Mode = 3035,
  Filter = 3036,
  Signal = 3037,
  State = 3038,
  Fault = 3039,
  HealsAfter = 3040,
  AnswerTime = 3041,
  LinkTime = 3042,
  Apply = 3043,
  Host = 3044,
  Port = 3045,
  Line = 3050,  // 0..7
};

}  // namespace kelvane::sondrel::id
