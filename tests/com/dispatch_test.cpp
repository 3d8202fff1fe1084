// Late-bound calls against an automation object in the test's process: the
// same IDispatch calls the COM host makes across processes.

#include "com/dispatch.h"

#include <gtest/gtest.h>
#include <oleauto.h>

#include <cstdlib>

#include "com/attach.h"
#include "com/call_error.h"
#include "fake_dispatch.h"
#include "host/error.h"

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

}  // namespace
}  // namespace sheafwork::com
