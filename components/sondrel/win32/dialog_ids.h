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
  ShareState = 3022,
  Programs = 3023,  // that share the receiver
  CopyAddress = 3024,
  EndProgram = 3025,

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

  // Adding a radio: window class KelvaneAddRadio; opened by the list's AddRadio
  AddRadio = 3060,
  Maker = 3061,
  Find = 3062,
  Models = 3063,
  Device = 3064,
  Speed = 3065,
  Civ = 3066,
  Handshake = 3067,
  RadioName = 3068,
  Rigctld = 3069,  // which one is used, or what is wrong with it
  ShowRigctld = 3070,
  Try = 3071,
  TrySpeeds = 3072,
  Stop = 3073,
  Steps = 3074,  // of the trial, a line each

  // Servers that run already: window class KelvaneFindServers; opened by the list's FindServers
  FindServers = 3080,
  SearchHost = 3081,
  Search = 3082,
  Servers = 3083,
  SearchState = 3084,
};

}  // namespace kelvane::sondrel::id
