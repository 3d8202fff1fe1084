// The test automation server: a local-server program that serves the host
// automation interface under the ProgID "Sheafwork.TestHost.1" (the scripted
// host of the tests), or "Sheafwork.TestEmbeddedHost.1" (the embedded host,
// sheafwork-test-embedded-host).
//   sheafwork-test-host /RegServer     registers it for the current user
//   sheafwork-test-host /UnregServer   takes the registration away
//   sheafwork-test-host -Embedding     (how COM starts it) serves until Quit
// It ends after Quit, or after kIdleLimitMs without a call, so that a client
// that never said goodbye leaves no server behind. Control lines (see
// served_object.h and served_host.h) come from the application's
// TestControl member, or from a file named like the program with ".control"
// beside it ("sheafwork-test-host.control"), read at start.

#include <objbase.h>
#include <oleauto.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "comserver/served_host.h"
#include "comserver/served_object.h"
#include "platform/windows_text.h"

namespace {

using namespace sheafwork;

#ifdef SHEAFWORK_SERVES_EMBEDDED_HOST
// {5C1E7A52-3B9D-4E0F-9A61-2D7B8C4F1A04}
constexpr CLSID kClsid = {
    0x5c1e7a52, 0x3b9d, 0x4e0f, {0x9a, 0x61, 0x2d, 0x7b, 0x8c, 0x4f, 0x1a, 0x04}};
constexpr const wchar_t* kProgId = L"Sheafwork.TestEmbeddedHost.1";
#else
// {5C1E7A52-3B9D-4E0F-9A61-2D7B8C4F1A03}
constexpr CLSID kClsid = {
    0x5c1e7a52, 0x3b9d, 0x4e0f, {0x9a, 0x61, 0x2d, 0x7b, 0x8c, 0x4f, 0x1a, 0x03}};
constexpr const wchar_t* kProgId = L"Sheafwork.TestHost.1";
#endif
constexpr DWORD kIdleLimitMs = 120000;

std::wstring ClsidText() {
  wchar_t text[64];
  StringFromGUID2(kClsid, text, 64);
  return text;
}

std::wstring ProgramPath() {
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::wstring(path, length);
}

// Makes `key` with `value` as its default value.
bool SetKey(HKEY root, const std::wstring& key, const std::wstring& value) {
  return RegSetKeyValueW(root, key.c_str(), nullptr, REG_SZ, value.c_str(),
                         static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool RegisterUnder(HKEY root) {
  const std::wstring classes = L"Software\\Classes\\";
  const std::wstring clsidKey = classes + L"CLSID\\" + ClsidText();
  return SetKey(root, clsidKey, L"Sheafwork test host") &&
         SetKey(root, clsidKey + L"\\LocalServer32", L"\"" + ProgramPath() + L"\"") &&
         SetKey(root, clsidKey + L"\\ProgID", kProgId) &&
         SetKey(root, classes + kProgId, L"Sheafwork test host") &&
         SetKey(root, classes + kProgId + L"\\CLSID", ClsidText());
}

// For the whole machine where that is allowed (Wine finds classes only
// there), else for the current user.
int Register() {
  const bool ok = RegisterUnder(HKEY_LOCAL_MACHINE) || RegisterUnder(HKEY_CURRENT_USER);
  if (!ok) std::fprintf(stderr, "sheafwork-test-host: registration failed\n");
  return ok ? 0 : 1;
}

int Unregister() {
  const std::wstring classes = L"Software\\Classes\\";
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    RegDeleteTreeW(root, (classes + L"CLSID\\" + ClsidText()).c_str());
    RegDeleteTreeW(root, (classes + kProgId).c_str());
  }
  return 0;
}

// Hands out the one application object.
class Factory final : public IClassFactory {
 public:
  explicit Factory(IDispatch* app) : app_(app) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (iid == IID_IUnknown || iid == IID_IClassFactory) {
      *out = static_cast<IClassFactory*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives as long as the server
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return app_->QueryInterface(iid, out);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  IDispatch* app_;
};

// Control lines from the file beside the program, when there is one.
void ReadControlFile(comserver::ServedApplication& served) {
  std::wstring path = ProgramPath();
  path = path.substr(0, path.find_last_of(L'.')) + L".control";
  std::ifstream file{std::filesystem::path(path)};
  std::string line;
  while (std::getline(file, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty() && !comserver::AddFaultRule(line)) served.Configure(line);
  }
}

int Serve() {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  int status = 0;
  {
    auto served = comserver::MakeServedApplication();
    ReadControlFile(*served);
    const DWORD thread = GetCurrentThreadId();
    comserver::ServerHooks hooks;
    hooks.configure = [&served](std::string_view line) { return served->Configure(line); };
    hooks.quit = [thread] { PostThreadMessageW(thread, WM_QUIT, 0, 0); };
    hooks.kind = served->Kind();
    com::ComRef<IDispatch> app = comserver::ServeApplication(served->App(), hooks);
    DWORD lastCall = GetTickCount();
    comserver::SetCallListener([&lastCall] { lastCall = GetTickCount(); });

    Factory factory(app.get());
    DWORD classCookie = 0;
    DWORD runningCookie = 0;
    if (FAILED(CoRegisterClassObject(kClsid, &factory, CLSCTX_LOCAL_SERVER, REGCLS_MULTIPLEUSE,
                                     &classCookie))) {
      status = 1;
    } else {
      RegisterActiveObject(app.get(), kClsid, ACTIVEOBJECT_STRONG, &runningCookie);
      MSG message;
      bool going = true;
      while (going) {
        if (MsgWaitForMultipleObjects(0, nullptr, FALSE, 1000, QS_ALLINPUT) == WAIT_TIMEOUT &&
            GetTickCount() - lastCall > kIdleLimitMs) {
          break;
        }
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
          if (message.message == WM_QUIT) going = false;
          TranslateMessage(&message);
          DispatchMessageW(&message);
        }
      }
      if (runningCookie != 0) RevokeActiveObject(runningCookie, nullptr);
      CoRevokeClassObject(classCookie);
    }
    CoDisconnectObject(app.get(), 0);
  }
  CoUninitialize();
  return status;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  for (int i = 1; i < argc; ++i) {
    // "/RegServer" or "-RegServer", in any letter case.
    const wchar_t* option = argv[i][0] == L'/' || argv[i][0] == L'-' ? argv[i] + 1 : L"";
    if (_wcsicmp(option, L"RegServer") == 0) return Register();
    if (_wcsicmp(option, L"UnregServer") == 0) return Unregister();
  }
  return Serve();
}
