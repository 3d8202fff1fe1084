#pragma once
// The client's side of a busy host. A call the host turns away because it is
// busy is retried, never failed at once; once a turned-away call, or a
// request the host has not answered yet, has waited kBusyNoticeDelayMs, the
// user is told once for that call (294 busy, 293 waiting) under the
// program's title, and the waiting goes on.

#include <objidl.h>

#include "prompt/prompt.h"

namespace sheafwork::com {

inline constexpr DWORD kBusyNoticeDelayMs = 30000;
/// How long to wait before a turned-away call is made again.
inline constexpr DWORD kBusyRetryMs = 250;

class BusyHostFilter final : public IMessageFilter {
 public:
  explicit BusyHostFilter(Prompt& prompt) : prompt_(prompt) {}

  // IUnknown (the filter lives as long as its owner; no reference counting).
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  // IMessageFilter
  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD, HTASK, DWORD, LPINTERFACEINFO) override {
    return SERVERCALL_ISHANDLED;
  }
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK callee, DWORD elapsedMs,
                                            DWORD rejectType) override;
  DWORD STDMETHODCALLTYPE MessagePending(HTASK callee, DWORD elapsedMs, DWORD pendingType) override;

 private:
  // A call's counts start again near zero: a new call, told anew.
  void FollowCall(DWORD elapsedMs);
  void Tell(int id);

  Prompt& prompt_;
  DWORD lastElapsed_ = 0;
  bool busyTold_ = false;
  bool waitingTold_ = false;
};

/// Puts `filter` in place for the calling thread while it lives, and the
/// previous filter back afterwards.
class ScopedMessageFilter {
 public:
  explicit ScopedMessageFilter(IMessageFilter& filter);
  ~ScopedMessageFilter();
  ScopedMessageFilter(const ScopedMessageFilter&) = delete;
  ScopedMessageFilter& operator=(const ScopedMessageFilter&) = delete;

 private:
  IMessageFilter* previous_ = nullptr;
  bool installed_ = false;
};

}  // namespace sheafwork::com
