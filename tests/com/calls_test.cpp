// Calls as hosts make them: through the dual interface and late bound; events; descriptions; errors.
#include <array>
#include <vector>

#include "com_support.h"
#include "host/runtime_error.h"

namespace tremvik::com_test {
namespace {

constexpr DISPID kLefRigNumChr = 7;

VARIANT ByReference(VARTYPE type, void* where) {
  VARIANT value{};
  value.vt = static_cast<VARTYPE>(VT_BYREF | type);
  value.byref = where;
  return value;
}

VARIANT Omitted() {
  VARIANT value{};
  value.vt = VT_ERROR;
  value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}

VARIANT Bool(bool truth) {
  VARIANT value{};
  value.vt = VT_BOOL;
  value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

class Calls : public ComTest {
 protected:
  /// LefRigNumChr with `reversed`, the last argument first; the first of them have the names `names`.
  HRESULT Call(std::vector<VARIANT> reversed, std::vector<DISPID> names = {}) {
    DISPPARAMS parameters{reversed.data(), names.data(), static_cast<UINT>(reversed.size()),
                          static_cast<UINT>(names.size())};
    result_ = Variant();
    return tremvik_->Invoke(kLefRigNumChr, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                            &result_.raw(), nullptr, &wrong_);
  }

  ComPtr<_Tremvik> tremvik_ = Make();
  Variant result_;
  UINT wrong_ = 99;
};

// "0" is a plain number, and is refused only with the zero flag: the result shows which flag arrived.
TEST_F(Calls, LateBoundCallersPassWhatTheyHave) {
  Bstr zero(L"0");
  BSTR by_reference = zero.get();
  Variant text(std::string_view("0"));
  Variant truth;
  truth.raw() = Bool(true);
  VARIANT_BOOL boolean = VARIANT_TRUE;
  VARIANT number{};
  number.vt = VT_I2;
  const VARIANT bstr = ByReference(VT_BSTR, &by_reference);
  const VARIANT variable = ByReference(VT_VARIANT, &text.raw());
  struct Case {
    const char* what;
    std::vector<VARIANT> reversed;
    std::vector<DISPID> names;
    bool refused;
  };
  const std::vector<Case> cases{
      {"literal", {text.raw()}, {}, false},
      {"string by reference", {bstr}, {}, false},
      {"variable", {variable}, {}, false},
      {"number for a string", {number}, {}, false},
      {"flag", {Bool(true), variable}, {}, true},
      {"flag by reference", {ByReference(VT_BOOL, &boolean), bstr}, {}, true},
      {"flag in a variable", {ByReference(VT_VARIANT, &truth.raw()), variable}, {}, true},
      {"first flag omitted", {Bool(true), Omitted(), variable}, {}, false},
      {"second flag by name", {Bool(true), variable}, {2}, false},
      {"first flag by name", {Bool(true), variable}, {1}, true},
      {"all by name", {Bool(true), variable}, {1, 0}, true},
  };
  for (const Case& each : cases) {
    ASSERT_EQ(Call(each.reversed, each.names), S_OK) << each.what;
    EXPECT_EQ(result_.raw().vt, VT_BOOL) << each.what;
    EXPECT_EQ(result_.raw().boolVal != VARIANT_FALSE, each.refused) << each.what;
  }
  EXPECT_EQ(com::AsText(text), "0") << "the caller's variable is left as it was";
}

TEST_F(Calls, WrongArgumentsAreNamed) {
  Variant text(std::string_view("0"));
  Variant word(std::string_view("nem sim nem nao"));
  EXPECT_EQ(Call({}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call({Bool(true), Bool(true), Bool(true), text.raw()}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call({word.raw(), text.raw()}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrong_, 0U) << "the flag is the last argument";
  EXPECT_EQ(Call({Bool(true), text.raw()}, {9}), DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(Call({text.raw(), text.raw()}, {0}), DISP_E_BADPARAMCOUNT) << "the text, twice";
  EXPECT_EQ(Call({text.raw()}, {0, 1}), DISP_E_BADPARAMCOUNT) << "more names than arguments";
}

TEST_F(Calls, MembersAndArgumentsHaveNames) {
  std::array<std::wstring, 3> names{L"lefrignumchr", L"b", L"c"};
  std::array<LPOLESTR, 3> given{names[0].data(), names[1].data(), names[2].data()};
  std::array<DISPID, 3> ids{};
  ASSERT_EQ(tremvik_->GetIDsOfNames(IID_NULL, given.data(), given.size(), 0, ids.data()), S_OK);
  EXPECT_EQ(ids, (std::array<DISPID, 3>{kLefRigNumChr, 1, 2}));
  EXPECT_EQ(tremvik_->GetIDsOfNames(IID_NULL, &given[1], 1, 0, ids.data()), DISP_E_UNKNOWNNAME);
}

TEST_F(Calls, PropertiesKeepTheirTypes) {
  LateBound late{ComPtr<IDispatch>(tremvik_.get())};
  late.Put(L"database_name", Variant(std::string_view("Declarações.mdb")));
  late.Put(L"idxBanco", Variant(std::string_view("12")));
  late.Put(L"bolRetMonitora", Variant(std::int16_t{-1}));
  EXPECT_EQ(com::AsText(late.Call(L"database_name")), "Declarações.mdb");
  EXPECT_EQ(late.Call(L"idxBanco").raw().vt, VT_I2);
  EXPECT_EQ(com::AsInteger(late.Call(L"idxBanco")), 12);
  EXPECT_TRUE(com::AsBoolean(late.Call(L"bolRetMonitora")));
  EXPECT_EQ(com::AsText(late.Call(L"linha")), "");
  EXPECT_EQ(com::AsText(late.Call(L"FomataValor", std::string_view("000000123456789"))), "1.234.567,89");
  EXPECT_EQ(com::AsText(late.Call(L"TiraZeros", std::string_view("510200"))), "512");
  EXPECT_TRUE(com::AsBoolean(late.Call(L"Validar_Cod_CredAcumulado")));
}

// The status and the error object of a member that failed, called directly.
void ExpectError(HRESULT status, unsigned number, std::string_view description) {
  EXPECT_EQ(status, Status(number));
  ComPtr<IErrorInfo> info;
  Bstr words;
  Bstr source;
  GUID guid{};
  ASSERT_EQ(GetErrorInfo(0, info.Receive()), S_OK);
  info->GetDescription(words.Receive());
  info->GetSource(source.Receive());
  info->GetGUID(&guid);
  EXPECT_EQ(com::Utf8(com::View(words.get())), description);
  EXPECT_EQ(com::Utf8(com::View(source.get())), "DllTremvik.Tremvik");
  EXPECT_TRUE(IsEqualGUID(guid, IID__Tremvik));
}

TEST_F(Calls, RunTimeErrorsReachTheCaller) {
  Bstr missing(L"C:\\nada\\não há.txt");
  Bstr word(L"nada");
  BSTR path = missing.get();
  BSTR text = word.get();
  VARIANT_BOOL truth = VARIANT_FALSE;
  Variant value;
  EXPECT_EQ(As<ISupportErrorInfo>(tremvik_)->InterfaceSupportsErrorInfo(IID__Tremvik), S_OK);
  ExpectError(tremvik_->CompararTotais(&path, &truth), 76, "Caminho não encontrado");
  ExpectError(tremvik_->FomataValor(&text, &value.raw()), 13, "Tipos incompatíveis");
  LateBound late{ComPtr<IDispatch>(tremvik_.get())};
  try {
    late.Call(L"FomataValor", std::string_view("nada"));
    ADD_FAILURE() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 13);
    EXPECT_EQ(error.description(), "Tipos incompatíveis");
  }
  EXPECT_EQ(Monitora(tremvik_, "C:\\nada\\nada.txt"), S_OK) << "Monitora lets no error out";
  EXPECT_EQ(tremvik_->get_NroLinha(nullptr), Status(5)) << "null pointers are refused, not followed";
}

TEST_F(Calls, SinksComeGoAndFailWithoutHarm) {
  auto container = As<IConnectionPointContainer>(tremvik_);
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, point.Receive()), CONNECT_E_NOCONNECTION);
  ASSERT_EQ(container->FindConnectionPoint(DIID___Tremvik, point.Receive()), S_OK);
  DWORD first_cookie = 0;
  DWORD second_cookie = 0;
  Sink second;
  Sink first([&] { point->Unadvise(second_cookie); });
  EXPECT_EQ(point->Advise(tremvik_.get(), &first_cookie), S_OK) << "any automation object will do";
  EXPECT_EQ(point->Unadvise(first_cookie), S_OK);
  ASSERT_EQ(point->Advise(&first, &first_cookie), S_OK);
  ASSERT_EQ(point->Advise(&second, &second_cookie), S_OK);

  EXPECT_EQ(Monitora(tremvik_, Sample("recusado-versao")), S_OK);
  EXPECT_EQ(first.events, (std::vector<DISPID>{1, 1, 2}))
      << "Progresso twice, then Fechar, for all that it fails";
  EXPECT_TRUE(second.events.empty()) << "gone before its turn";
  EXPECT_EQ(second.references, 1);
  EXPECT_EQ(point->Unadvise(second_cookie), CONNECT_E_NOCONNECTION);

  ComPtr<IEnumConnections> connections;
  CONNECTDATA data{};
  ASSERT_EQ(point->EnumConnections(connections.Receive()), S_OK);
  ASSERT_EQ(connections->Next(1, &data, nullptr), S_OK);
  EXPECT_EQ(data.dwCookie, first_cookie);
  data.pUnk->Release();
  EXPECT_EQ(connections->Next(1, &data, nullptr), S_FALSE);
  EXPECT_EQ(point->Unadvise(first_cookie), S_OK);
}

TEST_F(Calls, TheLastReferenceMayGoInAnEvent) {
  ComPtr<IConnectionPoint> point;
  As<IConnectionPointContainer>(tremvik_)->FindConnectionPoint(DIID___Tremvik, point.Receive());
  DWORD cookie = 0;
  Sink sink([&] { tremvik_ = {}; });
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  point = {};
  Bstr path(Sample("recusado-versao"));
  BSTR given = path.get();
  EXPECT_EQ(tremvik_.get()->Monitora(&given), S_OK);
  EXPECT_EQ(sink.events.size(), 3U);
  EXPECT_EQ(sink.references, 1) << "the object is gone and has let the sink go";
}

TEST_F(Calls, ASinkThatEndsWithItsSourceMayTurnToItOnceMore) {
  ComPtr<IConnectionPoint> point;
  As<IConnectionPointContainer>(tremvik_)->FindConnectionPoint(DIID___Tremvik, point.Receive());
  DWORD cookie = 0;
  HRESULT answer = S_OK;
  Sink sink;
  sink.when_let_go = [&, source = point.get()] {
    source->AddRef();
    answer = source->Unadvise(cookie);
    source->Release();
  };
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  point = {};
  tremvik_ = {};
  EXPECT_EQ(answer, CONNECT_E_NOCONNECTION);
  EXPECT_EQ(sink.references, 1);
}

TEST_F(Calls, TheObjectDescribesItself) {
  auto info = As<IProvideClassInfo2>(tremvik_);
  ComPtr<ITypeInfo> type;
  TYPEATTR* attributes = nullptr;
  GUID events{};
  ASSERT_EQ(info->GetClassInfo(type.Receive()), S_OK);
  ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
  EXPECT_TRUE(IsEqualGUID(attributes->guid, CLSID_Tremvik));
  EXPECT_EQ(attributes->cImplTypes, 2);
  type->ReleaseTypeAttr(attributes);
  EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
  EXPECT_TRUE(IsEqualGUID(events, DIID___Tremvik));
  ComPtr<IUnknown> aggregated;
  EXPECT_EQ(CoCreateInstance(CLSID_Tremvik, tremvik_.get(), CLSCTX_INPROC_SERVER, IID_IUnknown,
                             aggregated.ReceiveVoid()),
            CLASS_E_NOAGGREGATION);
}

}  // namespace
}  // namespace tremvik::com_test
