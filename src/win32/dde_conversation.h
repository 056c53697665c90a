#pragma once

#include <windows.h>

#include <ddeml.h>

#include <atomic>
#include <memory>
#include <string>

#include "frequency/digit_server.h"
#include "win32/dde_mail.h"

namespace kelvane::win32 {

/// One receiver's conversation with the server of its digits, in a thread of its own: looking for a
/// server waits for every window of the desktop, and a request for the server's answer.
class DdeConversation {
 public:
  /// Starts looking for the server at once. Texts that it announces go into the mail.
  static std::shared_ptr<DdeConversation> start(Index rx, std::string server,
                                                std::shared_ptr<DdeMail> mail);
  ~DdeConversation();
  DdeConversation(const DdeConversation&) = delete;
  DdeConversation& operator=(const DdeConversation&) = delete;

  const std::string& server() const { return server_; }
  DigitLink state() const { return state_; }
  /// Looks for the server again if there is none.
  void refresh();
  /// Ends the conversation as soon as whatever it waits for allows; delivers nothing any more.
  void stop();
  HANDLE thread() const { return thread_; }

 private:
  DdeConversation(Index rx, std::string server, std::shared_ptr<DdeMail> mail);

  static DWORD WINAPI threadMain(void* parameter);
  static HDDEDATA CALLBACK callback(UINT type, UINT format, HCONV conversation, HSZ topic, HSZ item,
                                    HDDEDATA data, ULONG_PTR first, ULONG_PTR second);
  static DdeConversation* ownerOf(HCONV conversation);

  void run();
  bool begin();
  void finish();
  void connect();
  bool askToBeTold();
  void fetch();
  bool canGoOnAfter(UINT why);
  void announced();
  void take(HDDEDATA data);
  bool alive() const;
  void drop(DigitLink state);

  const Index rx_;
  const std::string server_;
  const std::shared_ptr<DdeMail> mail_;
  const HANDLE wake_;
  HANDLE thread_ = nullptr;
  std::atomic<DigitLink> state_ = DigitLink::Waiting;
  std::atomic<bool> stop_ = false;
  std::atomic<bool> refresh_ = true;

  // Of the thread alone.
  DWORD instance_ = 0;
  HSZ item_ = nullptr;
  HCONV conversation_ = nullptr;
  bool lost_ = false;  ///< a conversation has ended
  int announced_ = 0;  ///< announced and not delivered
  int asked_ = 0;      ///< of those: asked for, and the answer is still to come
};

}  // namespace kelvane::win32
