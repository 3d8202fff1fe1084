// Late-bound calls against an automation object in the test's process: the
// same IDispatch calls the COM host makes across processes. And the busy
// host's filter, driven as COM drives it: Wine never asks a client filter to
// retry, so the calls are made here with the counts a busy host would bring.

#include "com/dispatch.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include <cstdlib>

#include "com/attach.h"
#include "com/busy_filter.h"
#include "com/call_error.h"
#include "fake_dispatch.h"
#include "fakes/scripted_prompt.h"
#include "host/error.h"
#include "res/string_table.h"

namespace sheafwork::com {
namespace {

using testing::FakeDispatch;

// Fills the EXCEPINFO only when the client asks (deferred fill-in).
HRESULT STDAPICALLTYPE FillFileNotFound(EXCEPINFO* info) {
  info->scode = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 53);
  info->bstrDescription = SysAllocString(L"Fichier introuvable: Plans été Ω\U0001D11E.dwg");
  return S_OK;
}

class DispatchTest : public ::testing::Test {
 protected:
  DispatchTest() {
    fake.Add(L"Name", [](const std::vector<VARIANT>&, VARIANT* result, EXCEPINFO*) {
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(L"Plans été Ω\U0001D11E");
      return S_OK;
    });
    fake.Add(L"Width", [this](const std::vector<VARIANT>& args, VARIANT* result, EXCEPINFO*) {
      if (!args.empty()) width = args[0].lVal;
      if (result != nullptr) {
        result->vt = VT_I4;
        result->lVal = width;
      }
      return S_OK;
    });
    fake.Add(L"Subtract", [](const std::vector<VARIANT>& args, VARIANT* result, EXCEPINFO*) {
      result->vt = VT_R8;
      result->dblVal = args.at(0).dblVal - args.at(1).dblVal;
      return S_OK;
    });
    fake.Add(L"Open", [](const std::vector<VARIANT>&, VARIANT*, EXCEPINFO* info) {
      info->pfnDeferredFillIn = &FillFileNotFound;
      return DISP_E_EXCEPTION;
    });
    fake.Add(L"Plot", [](const std::vector<VARIANT>&, VARIANT*, EXCEPINFO* info) {
      info->wCode = 1001;
      info->scode = E_FAIL;
      info->bstrDescription = SysAllocString(L"Traceur occupé");
      return DISP_E_EXCEPTION;
    });
    fake.Add(L"Regen", [](const std::vector<VARIANT>&, VARIANT*, EXCEPINFO* info) {
      info->scode = E_ACCESSDENIED;
      info->bstrDescription = SysAllocString(L"Refusé");
      return DISP_E_EXCEPTION;
    });
    fake.Add(L"Quit",
             [](const std::vector<VARIANT>&, VARIANT*, EXCEPINFO*) { return RPC_E_DISCONNECTED; });
    fake.Add(L"Update", [](const std::vector<VARIANT>&, VARIANT*, EXCEPINFO*) {
      return HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE);
    });
  }

  FakeDispatch fake;
  std::int32_t width = 1024;
  Dispatch object{ComRef<IDispatch>::Share(&fake)};
};

TEST_F(DispatchTest, EachMemberIsLookedUpOncePerObject) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(object.Get("Name").AsString(), "Plans été Ω\U0001D11E");
  object.Put("Width", Variant(std::int32_t{800}));
  EXPECT_EQ(object.Get("Width").AsInt32(), 800);
  EXPECT_EQ(fake.Lookups(L"Name"), 1);
  EXPECT_EQ(fake.Lookups(L"Width"), 1);

  // Another object of the same server has its own lookups.
  Dispatch other{ComRef<IDispatch>::Share(&fake)};
  other.Get("Name");
  EXPECT_EQ(fake.Lookups(L"Name"), 2);
}

TEST_F(DispatchTest, ArgumentsArriveLeftToRightAndAPutIsNamedAsOne) {
  std::vector<Variant> args;
  args.emplace_back(10.0);
  args.emplace_back(4.0);
  EXPECT_EQ(object.Call("Subtract", std::move(args)).AsDouble(), 6.0);
  EXPECT_FALSE(fake.lastWasNamedPut);
  object.Put("Width", Variant(std::int32_t{640}));
  EXPECT_TRUE(fake.lastWasNamedPut);
  EXPECT_EQ(fake.lastFlags, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(width, 640);
  // A reading that does not convert is the host's type mismatch.
  try {
    object.Get("Name").AsInt32();
    ADD_FAILURE() << "no error";
  } catch (const host::Error& error) {
    EXPECT_EQ(error.number(), 13);
  }
}

// member, number, description, whether the host is gone
struct ErrorCase {
  const char* member;
  std::int32_t number;
  const char* description;
  bool gone;
};

TEST_F(DispatchTest, ServerErrorsBecomeHostErrorsWithTheirNumberAndDescription) {
  const ErrorCase cases[] = {
      // deferred fill-in, number from a FACILITY_CONTROL scode
      {"Open", 53, "Fichier introuvable: Plans été Ω\U0001D11E.dwg", false},
      // wCode before scode
      {"Plot", 1001, "Traceur occupé", false},
      // any other scode is the number
      {"Regen", static_cast<std::int32_t>(E_ACCESSDENIED), "Refusé", false},
      {"Quit", static_cast<std::int32_t>(RPC_E_DISCONNECTED), nullptr, true},
      {"Update", static_cast<std::int32_t>(HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE)), nullptr,
       true},
      {"NoSuchMember", static_cast<std::int32_t>(DISP_E_UNKNOWNNAME), nullptr, false},
  };
  for (const ErrorCase& c : cases) {
    SCOPED_TRACE(c.member);
    try {
      object.Call(c.member);
      ADD_FAILURE() << "no error";
    } catch (const host::HostGone& error) {
      EXPECT_TRUE(c.gone);
      EXPECT_EQ(error.number(), c.number);
      EXPECT_NE(error.description().find(c.member), std::string::npos) << error.description();
      EXPECT_NE(error.description().find(HresultText(c.number)), std::string::npos);
    } catch (const host::Error& error) {
      EXPECT_FALSE(c.gone);
      EXPECT_EQ(error.number(), c.number);
      if (c.description) {
        EXPECT_EQ(error.description(), c.description);
      } else {
        EXPECT_NE(error.description().find(c.member), std::string::npos) << error.description();
      }
    }
  }
}

TEST(ProgIdTest, TheCommandLineThenTheEnvironmentThenTheDefault) {
  _wputenv(L"SHEAFWORK_PROGID=");
  EXPECT_EQ(ChooseProgId(""), kDefaultProgId);
  _wputenv(L"SHEAFWORK_PROGID=Essai.Hôte.1");
  EXPECT_EQ(ChooseProgId(""), "Essai.Hôte.1");
  EXPECT_EQ(ChooseProgId("Autre.Application.16"), "Autre.Application.16");
  _wputenv(L"SHEAFWORK_PROGID=");
}

TEST(AttachTest, AnUnregisteredProgIdFailsNamingIt) {
  Apartment apartment;
  ASSERT_TRUE(apartment.ok());
  EXPECT_FALSE(IsProgIdRegistered("Sheafwork.Absent.1"));
  try {
    AttachServer("Sheafwork.Absent.1");
    ADD_FAILURE() << "attached";
  } catch (const host::Error& error) {
    EXPECT_EQ(error.number(), static_cast<std::int32_t>(CO_E_CLASSSTRING));
    EXPECT_NE(error.description().find("Sheafwork.Absent.1"), std::string::npos);
  }
}

// The busy host's filter.

class BusyHostFilterTest : public ::testing::Test {
 protected:
  std::vector<std::string> Told() const {
    std::vector<std::string> texts;
    for (const auto& m : prompt.messages) {
      EXPECT_EQ(m.title, LoadResourceText(31));
      texts.push_back(m.text);
    }
    return texts;
  }
  testing::ScriptedPrompt prompt;
  BusyHostFilter filter{prompt};
};

TEST_F(BusyHostFilterTest, ABusyHostIsWaitedForAndTheUserToldOncePerCall) {
  const std::string busy = LoadResourceText(294);
  // elapsed ms of the same call, then whether the user has been told by then
  const std::pair<DWORD, std::size_t> steps[] = {
      {0, 0},
      {10000, 0},
      {29999, 0},
      {30000, 1},
      {45000, 1},
      {90000, 1},
      // a new call starts its count again and is told again
      {100, 1},
      {31000, 2}};
  for (const auto& [elapsed, told] : steps) {
    SCOPED_TRACE(elapsed);
    EXPECT_EQ(filter.RetryRejectedCall(nullptr, elapsed, SERVERCALL_RETRYLATER), kBusyRetryMs);
    EXPECT_EQ(Told(), std::vector<std::string>(told, busy));
  }
  // A host that refuses for good fails the call at once.
  EXPECT_EQ(filter.RetryRejectedCall(nullptr, 0, SERVERCALL_REJECTED), static_cast<DWORD>(-1));
}

TEST_F(BusyHostFilterTest, ARequestLeftUnansweredIsToldOnceAndWaitedFor) {
  EXPECT_EQ(filter.MessagePending(nullptr, 5000, PENDINGTYPE_TOPLEVEL),
            static_cast<DWORD>(PENDINGMSG_WAITDEFPROCESS));
  EXPECT_TRUE(prompt.messages.empty());
  filter.MessagePending(nullptr, 30000, PENDINGTYPE_TOPLEVEL);
  filter.MessagePending(nullptr, 60000, PENDINGTYPE_TOPLEVEL);
  EXPECT_EQ(Told(), std::vector<std::string>{LoadResourceText(293)});
  // Incoming calls from the host are always taken.
  EXPECT_EQ(filter.HandleInComingCall(CALLTYPE_TOPLEVEL, nullptr, 0, nullptr),
            static_cast<DWORD>(SERVERCALL_ISHANDLED));
}

}  // namespace
}  // namespace sheafwork::com
