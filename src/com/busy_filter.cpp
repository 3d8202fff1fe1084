#include "com/busy_filter.h"

#include "res/string_ids.h"
#include "res/string_table.h"

namespace sheafwork::com {

HRESULT BusyHostFilter::QueryInterface(REFIID iid, void** out) {
  if (iid == IID_IUnknown || iid == IID_IMessageFilter) {
    *out = static_cast<IMessageFilter*>(this);
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

void BusyHostFilter::FollowCall(DWORD elapsedMs) {
  if (elapsedMs < lastElapsed_) {
    busyTold_ = false;
    waitingTold_ = false;
  }
  lastElapsed_ = elapsedMs;
}

void BusyHostFilter::Tell(int id) {
  prompt_.Ask({LoadResourceText(id), LoadResourceText(ids::kAppTitle), PromptIcon::Exclamation,
               PromptButtons::Ok});
}

DWORD BusyHostFilter::RetryRejectedCall(HTASK, DWORD elapsedMs, DWORD rejectType) {
  // Turned away for good: the call fails with the host's answer.
  if (rejectType == SERVERCALL_REJECTED) return static_cast<DWORD>(-1);
  FollowCall(elapsedMs);
  if (elapsedMs >= kBusyNoticeDelayMs && !busyTold_) {
    busyTold_ = true;
    Tell(ids::kHostBusy);
  }
  return kBusyRetryMs;
}

DWORD BusyHostFilter::MessagePending(HTASK, DWORD elapsedMs, DWORD) {
  FollowCall(elapsedMs);
  if (elapsedMs >= kBusyNoticeDelayMs && !waitingTold_) {
    waitingTold_ = true;
    Tell(ids::kHostRequestPending);
  }
  return PENDINGMSG_WAITDEFPROCESS;
}

ScopedMessageFilter::ScopedMessageFilter(IMessageFilter& filter) {
  installed_ = SUCCEEDED(CoRegisterMessageFilter(&filter, &previous_));
}

ScopedMessageFilter::~ScopedMessageFilter() {
  if (!installed_) return;
  IMessageFilter* ours = nullptr;
  CoRegisterMessageFilter(previous_, &ours);
  if (previous_ != nullptr) previous_->Release();
}

}  // namespace sheafwork::com
