// Calls as hosts make them: through the dual interface and late bound; descriptions; errors; events.
#include <array>
#include <span>

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
  HRESULT Call(std::vector<VARIANT> reversed, std::vector<DISPID> names = {}, REFIID iid = IID_NULL) {
    DISPPARAMS parameters{reversed.data(), names.data(), static_cast<UINT>(reversed.size()),
                          static_cast<UINT>(names.size())};
    result_ = Variant();
    return tremvik_->Invoke(kLefRigNumChr, iid, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
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
  Variant word(std::string_view("nem sim nem nao"));
  VARIANT truth = Bool(true);
  VARIANT omitted = Omitted();
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
      {"number for a string", {number}, {}, false},
      {"flag", {truth, variable}, {}, true},
      {"flag by reference", {ByReference(VT_BOOL, &boolean), bstr}, {}, true},
      {"flag in a variable", {ByReference(VT_VARIANT, &truth), variable}, {}, true},
      {"first flag omitted", {truth, Omitted(), variable}, {}, false},
      {"first flag omitted, passed on", {truth, ByReference(VT_VARIANT, &omitted), variable}, {}, false},
      {"second flag by name", {truth, variable}, {2}, false},
      {"all by name", {truth, variable}, {1, 0}, true},
  };
  for (const Case& each : cases) {
    ASSERT_EQ(Call(each.reversed, each.names), S_OK) << each.what;
    EXPECT_EQ(result_.raw().vt, VT_BOOL) << each.what;
    EXPECT_EQ(result_.raw().boolVal != VARIANT_FALSE, each.refused) << each.what;
  }
  EXPECT_EQ(As<std::string>(text), "0") << "the caller's variable is left as it was";

  EXPECT_EQ(Call({}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call({ByReference(VT_VARIANT, &omitted)}), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call({truth, truth, truth, text.raw()}), DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Call({word.raw(), text.raw()}), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrong_, 0U) << "the flag is the last argument";
  EXPECT_EQ(Call({truth, text.raw()}, {9}), DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(Call({text.raw(), text.raw()}, {0}), DISP_E_BADPARAMCOUNT) << "the text, twice";
  EXPECT_EQ(Call({text.raw()}, {0, 1}), DISP_E_BADPARAMCOUNT) << "more names than arguments";
  EXPECT_EQ(Call({text.raw()}, {}, IID_IDispatch), DISP_E_UNKNOWNINTERFACE);
}

TEST_F(Calls, TheObjectDescribesItself) {
  std::array<std::wstring, 3> names{L"lefrignumchr", L"b", L"c"};
  std::array<LPOLESTR, 3> given{names[0].data(), names[1].data(), names[2].data()};
  std::array<DISPID, 3> ids{};
  ASSERT_EQ(tremvik_->GetIDsOfNames(IID_NULL, given.data(), given.size(), 0, ids.data()), S_OK);
  EXPECT_EQ(ids, (std::array<DISPID, 3>{kLefRigNumChr, 1, 2}));
  EXPECT_EQ(tremvik_->GetIDsOfNames(IID_NULL, &given[1], 1, 0, ids.data()), DISP_E_UNKNOWNNAME);

  ComPtr<ITypeInfo> type;
  ASSERT_EQ(tremvik_->GetTypeInfo(0, 0, type.Receive()), S_OK);
  for (DISPID member = 1; member <= 13; ++member) {
    Bstr help;
    ASSERT_EQ(type->GetDocumentation(member, nullptr, help.Receive(), nullptr, nullptr), S_OK) << member;
    EXPECT_GT(SysStringLen(help.get()), 20U) << member;
  }
  Bstr help;
  type->GetDocumentation(9, nullptr, help.Receive(), nullptr, nullptr);
  EXPECT_EQ(com::View(help.get()), L"O texto da última inconsistência ou dúvida");

  auto info = Cast<IProvideClassInfo2>(tremvik_);
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

TEST_F(Calls, PropertiesKeepTheirTypesAndCharacters) {
  LateBound late = Late(tremvik_);
  late.Put(L"database_name", Variant(std::string_view("Declarações.mdb")));
  late.Put(L"idxBanco", Variant(std::string_view("12")));
  late.Put(L"bolRetMonitora", Variant(std::int16_t{-1}));
  EXPECT_EQ(late.Get<std::string>(L"database_name"), "Declarações.mdb");
  EXPECT_EQ(late.Call(L"idxBanco").raw().vt, VT_I2);
  EXPECT_EQ(late.Get<std::int16_t>(L"idxBanco"), 12);
  EXPECT_TRUE(late.Get<bool>(L"bolRetMonitora"));
  EXPECT_EQ(late.Get<std::string>(L"linha"), "");
  EXPECT_EQ(late.Get<std::string>(L"FomataValor", std::string_view("000000123456789")), "1.234.567,89");
  EXPECT_EQ(late.Get<std::string>(L"TiraZeros", std::string_view("510200")), "512");
  EXPECT_TRUE(late.Get<bool>(L"Validar_Cod_CredAcumulado"));

  const Bstr strange(std::wstring_view(L"\xD83D\xDE00 \xDC00 \xD800x"));  // a pair, a trail and a lead alone
  Bstr back;
  ASSERT_EQ(tremvik_->put_database_name(strange.get()), S_OK);
  ASSERT_EQ(tremvik_->get_database_name(back.Receive()), S_OK);
  EXPECT_EQ(com::View(back.get()), com::View(strange.get()));
  EXPECT_EQ(com::Wide("\xC0\xAF\xE9"), L"\uFFFD\uFFFD\uFFFD") << "overlong, and cut short";
}

TEST_F(Calls, ErrorsAndWrongPlacesReachTheCaller) {
  Bstr missing(L"C:\\nada\\não há.txt");
  Bstr word(L"nada");
  BSTR path = missing.get();
  BSTR text = word.get();
  VARIANT_BOOL truth = VARIANT_FALSE;
  Variant value;
  EXPECT_EQ(Cast<ISupportErrorInfo>(tremvik_)->InterfaceSupportsErrorInfo(IID__Tremvik), S_OK);
  EXPECT_EQ(tremvik_->CompararTotais(&path, &truth), Status(76));
  EXPECT_EQ(ErrorWords(), "Caminho não encontrado");
  EXPECT_EQ(tremvik_->FomataValor(&text, &value.raw()), Status(13));
  ComPtr<IErrorInfo> info;
  Bstr source;
  GUID guid{};
  ASSERT_EQ(GetErrorInfo(0, info.Receive()), S_OK);
  info->GetSource(source.Receive());
  info->GetGUID(&guid);
  EXPECT_EQ(com::View(source.get()), L"DllTremvik.Tremvik");
  EXPECT_TRUE(IsEqualGUID(guid, IID__Tremvik));
  try {
    Late(tremvik_).Call(L"FomataValor", std::string_view("nada"));
    ADD_FAILURE() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), 13);
    EXPECT_EQ(error.description(), "Tipos incompatíveis");
  }
  EXPECT_EQ(Monitora(tremvik_, "C:\\nada\\nada.txt"), S_OK) << "Monitora lets no error out";

  Sink sink;
  sink.Hear(tremvik_);
  EXPECT_EQ(tremvik_->CompararTotais(&path, nullptr), E_POINTER);
  EXPECT_TRUE(sink.events.empty()) << "what has no place to go to is not begun";
  EXPECT_EQ(tremvik_->get_NroLinha(nullptr), E_POINTER);
  EXPECT_EQ(tremvik_->get_database_name(nullptr), E_POINTER);
  EXPECT_EQ(tremvik_->TiraZeros(&text, nullptr), E_POINTER);
  EXPECT_EQ(Cast<IConnectionPointContainer>(tremvik_)->EnumConnectionPoints(nullptr), E_POINTER);
  EXPECT_EQ(Cast<IProvideClassInfo>(tremvik_)->GetClassInfo(nullptr), E_POINTER);
  tremvik_ = {};  // before its sink
}

using Events = Calls;

TEST_F(Events, SinksComeGoAndFailWithoutHarm) {
  auto point = EventsOf(tremvik_);
  ComPtr<IConnectionPoint> other;
  EXPECT_EQ(Cast<IConnectionPointContainer>(tremvik_)->FindConnectionPoint(IID_IDispatch, other.Receive()),
            CONNECT_E_NOCONNECTION);
  DWORD any = 0;
  EXPECT_EQ(point->Advise(tremvik_.get(), &any), S_OK) << "any automation object will do";
  EXPECT_EQ(point->Unadvise(any), S_OK);
  DWORD second_cookie = 0;
  Sink second;
  Sink first([&](DISPID) { point->Unadvise(second_cookie); });
  const DWORD first_cookie = first.Hear(tremvik_);
  second_cookie = second.Hear(tremvik_);

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

// The last reference goes in an event, of each member that raises one, called by name or directly (0).
TEST_F(Events, TheObjectMayBeLetGoInThem) {
  const Bstr path(Sample("recusado-versao"));
  BSTR given = path.get();
  for (const DISPID member : {4, 10, 11, 0}) {
    auto* const bare = Make().Detach();
    Sink sink([&](DISPID) {
      if (sink.events.size() == 1) bare->Release();
    });
    sink.Hear(ComPtr<_Tremvik>(bare));
    VARIANT argument = ByReference(VT_BSTR, &given);
    DISPPARAMS arguments{&argument, nullptr, member == 10 ? 0U : 1U, 0};
    const HRESULT status = member == 0 ? bare->Monitora(&given)
                                       : bare->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &arguments,
                                                      nullptr, nullptr, nullptr);
    EXPECT_EQ(status, S_OK) << member;
    EXPECT_FALSE(sink.events.empty()) << member;
    EXPECT_EQ(sink.references, 1) << member << ": the object is gone and has let the sink go";
  }
}

TEST_F(Events, ASinkThatEndsWithItsSourceMayTurnToItOnceMore) {
  HRESULT answer = S_OK;
  Sink sink;
  const DWORD cookie = sink.Hear(tremvik_);
  sink.when_let_go = [&, source = EventsOf(tremvik_).get()] {
    source->AddRef();
    answer = source->Unadvise(cookie);
    source->Release();
  };
  tremvik_ = {};
  EXPECT_EQ(answer, CONNECT_E_NOCONNECTION);
  EXPECT_EQ(sink.references, 1);
}

// A handler that lets the user in: the same object is not entered twice, another one is free.
TEST_F(Events, ARunIsNotEnteredAgain) {
  const std::string refused = Sample("recusado-versao");
  VARIANT_BOOL truth = VARIANT_FALSE;
  Bstr path(refused);
  BSTR given = path.get();
  const auto expect_refused = [](HRESULT status) {
    EXPECT_EQ(status, Status(5));
    EXPECT_NE(ErrorWords().find("ainda está executando"), std::string::npos);
  };
  Sink sink([&](DISPID) {
    expect_refused(tremvik_->Monitora(&given));
    expect_refused(tremvik_->CompararTotais(&given, &truth));
    expect_refused(tremvik_->ErroSair());
    EXPECT_EQ(Monitora(Make(), Sample("recusado-vazio")), S_OK);
  });
  sink.Hear(tremvik_);
  EXPECT_EQ(Monitora(tremvik_, refused), S_OK);
  EXPECT_EQ(sink.events, (std::vector<DISPID>{1, 1, 2}));
  const auto plain = Make();
  Monitora(plain, refused);
  EXPECT_EQ(Mensagem(tremvik_), Mensagem(plain));
  EXPECT_EQ(Monitora(tremvik_, refused), S_OK) << "free again";
  tremvik_ = {};  // before its sink
}

}  // namespace
}  // namespace tremvik::com_test
