// The tables of contract/ against the type libraries that the built components carry.
#include <map>
#include <set>

#include "contract/names.h"
#include "tests/wine/fake_components.h"

namespace kelvane::test {

namespace {

/// An operation or event as either side describes it.
struct Described {
  std::string name;
  DISPID id = 0;
  std::vector<std::string> parameters;  ///< "in short rx"
  std::string result;

  bool operator==(const Described&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Described& d) {
  out << d.id << " " << d.result << " " << d.name << "(";
  for (const std::string& p : d.parameters) out << p << "; ";
  return out << ")";
}

// --- the table's side

template <class Type>
constexpr const char* typeName() {
  if constexpr (std::is_void_v<Type>) return "void";
  if constexpr (std::is_same_v<Type, Index>) return "short";
  if constexpr (std::is_same_v<Type, Long>) return "long";
  if constexpr (std::is_same_v<Type, Flag>) return "flag";
  if constexpr (std::is_same_v<Type, Text>) return "text";
}

/// The names in "(Index rx, Setting mode)".
std::vector<std::string> parameterNames(const std::string& params) {
  std::vector<std::string> names;
  for (std::size_t end = params.find_first_of(",)"); end != std::string::npos;
       end = params.find_first_of(",)", end + 1)) {
    const std::size_t begin = params.find_last_of(" (", end) + 1;
    if (begin < end) names.push_back(params.substr(begin, end - begin));
  }
  return names;
}

template <class Result, class Base, class Given, class... Params>
Described described(const char* name, const char* params, Given (Base::*)(Params...)) {
  Described d{name, 0, {}, typeName<Result>()};
  const auto names = parameterNames(params);
  EXPECT_EQ(names.size(), sizeof...(Params)) << name;
  std::size_t i = 0;
  (d.parameters.push_back(std::string("in ") + typeName<Params>() + " " + names.at(i++)), ...);
  return d;
}

Described walking(Described d) {
  d.parameters.insert(d.parameters.end(), {"out long* position", "out long* count"});
  return d;
}

/// Ids go up by one, but for the rows that begin a block of their own.
std::vector<Described> numbered(std::vector<Described> rows) {
  DISPID next = 1;
  std::vector<Described> named;
  for (Described& d : rows) {
    if (d.name.empty()) {
      next = d.id;
      continue;
    }
    d.id = next++;
    named.push_back(std::move(d));
  }
  return named;
}

#undef FROM_ID
#define FROM_ID(id) Described{{}, id, {}, {}},
#define ASK(name, Result, fallback, params, args) \
  described<Result>(#name, #params, &Component::name),
#define TELL(name, params, args) described<void>(#name, #params, &Component::name),
#define WALK(name, params, args) walking(described<Long>(#name, #params, &Component::name)),
#define EVENT(name, params, args) described<void>(#name, #params, &Listener::name),
std::vector<Described> receiverOperations() {
  using Component = ReceiverComponent;
  return numbered({
#include "contract/sondrel_operations.inc"
  });
}
std::vector<Described> receiverEvents() {
  using Listener = ReceiverListener;
  return numbered({
#include "contract/sondrel_events.inc"
  });
}
std::vector<Described> frequencyOperations() {
  using Component = FrequencyComponent;
  return numbered({
#include "contract/ambrel_operations.inc"
  });
}
std::vector<Described> frequencyEvents() {
  using Listener = FrequencyListener;
  return numbered({
#include "contract/ambrel_events.inc"
  });
}
#undef ASK
#undef TELL
#undef WALK
#undef EVENT

// --- the type library's side

std::string typeName(const TYPEDESC& type) {
  switch (type.vt) {
    case VT_VOID:
    case VT_HRESULT:
      return "void";
    case VT_I2:
      return "short";
    case VT_I4:
      return "long";
    case VT_BOOL:
      return "flag";
    case VT_BSTR:
      return "text";
    case VT_PTR:
      return typeName(*type.lptdesc) + "*";
    default:
      return "VT_" + std::to_string(type.vt);
  }
}

std::string direction(const PARAMDESC& parameter) {
  switch (parameter.wParamFlags & (PARAMFLAG_FIN | PARAMFLAG_FOUT)) {
    case PARAMFLAG_FIN:
      return "in ";
    case PARAMFLAG_FOUT:
      return "out ";
    default:
      return "neither or both ";
  }
}

std::vector<std::string> namesOf(ITypeInfo& info, const FUNCDESC& function) {
  std::vector<BSTR> names(function.cParams + 1);
  UINT count = 0;
  info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &count);
  std::vector<std::string> texts;
  for (UINT i = 0; i < count; ++i) {
    texts.push_back(com::textOf(names[i]));
    SysFreeString(names[i]);
  }
  return texts;
}

Described described(ITypeInfo& info, const FUNCDESC& function) {
  const auto names = namesOf(info, function);
  Described d{names.at(0), function.memid, {}, typeName(function.elemdescFunc.tdesc)};
  EXPECT_EQ(function.invkind, INVOKE_FUNC) << d.name;
  for (int i = 0; i < function.cParams; ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    d.parameters.push_back(direction(parameter.paramdesc) + typeName(parameter.tdesc) + " " +
                           names.at(i + 1));
  }
  return d;
}

std::string helpOf(ITypeInfo& info, DISPID member) {
  BSTR help = nullptr;
  info.GetDocumentation(member, nullptr, &help, nullptr, nullptr);
  const std::string text = com::textOf(help);
  SysFreeString(help);
  return text;
}

/// Every function in its order; those that IDispatch itself has are left out.
template <class Use>
void forEachFunction(ITypeInfo& info, Use use) {
  FUNCDESC* function = nullptr;
  for (UINT i = 0; SUCCEEDED(info.GetFuncDesc(i, &function)); ++i) {
    if (function->memid < 0x6000'0000) use(*function);
    info.ReleaseFuncDesc(function);
  }
}

std::vector<Described> functionsOf(ITypeInfo& info) {
  std::vector<Described> rows;
  forEachFunction(info, [&](const FUNCDESC& f) { rows.push_back(described(info, f)); });
  return rows;
}

com::ComPtr<ITypeInfo> eventsOf(const com::TypeLibrary& types, REFIID iid) {
  com::ComPtr<ITypeInfo> info;
  EXPECT_EQ(types.library->GetTypeInfoOfGuid(iid, info.receive()), S_OK);
  return info;
}

struct Library {
  const wchar_t* file;
  const char* name;
  IID operations, events;
  CLSID coclass;
  std::vector<Described> operationRows, eventRows;
};

std::vector<Library> libraries() {
  return {{L"Sondrel.dll", "SONDRELLib", __uuidof(ISondrel), __uuidof(_ISondrelEvents),
           __uuidof(Sondrel), receiverOperations(), receiverEvents()},
          {L"Ambrel.dll", "AMBRELLib", __uuidof(IAmbrel), __uuidof(_IAmbrelEvents),
           __uuidof(Ambrel), frequencyOperations(), frequencyEvents()}};
}

}  // namespace

TEST(TypeLibraries, HoldTheTablesOperationsAndEventsOneByOneAndNoMore) {
  for (const Library& library : libraries()) {
    const auto types = typesOf(library.file, library.operations, library.coclass);
    EXPECT_EQ(functionsOf(*types.operations), library.operationRows) << library.name;
    EXPECT_EQ(functionsOf(*eventsOf(types, library.events)), library.eventRows) << library.name;
  }
}

TEST(TypeLibraries, AreNamedAsAgreedAndTellWhoeverScriptsThemWhatEachMemberMeans) {
  for (const Library& library : libraries()) {
    const auto types = typesOf(library.file, library.operations, library.coclass);
    BSTR name = nullptr;
    types.library->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
    EXPECT_EQ(com::textOf(name), library.name);
    SysFreeString(name);
    std::set<std::string> texts;
    std::size_t members = 0;
    for (const auto& info : {types.operations, eventsOf(types, library.events)}) {
      forEachFunction(*info, [&](const FUNCDESC& f) {
        ++members;
        texts.insert(helpOf(*info, f.memid));
        EXPECT_NE(helpOf(*info, f.memid), "") << library.name << " " << f.memid;
      });
    }
    EXPECT_GE(texts.size(), members - 2) << "copied from one member to another";
  }
}

TEST(TypeLibraries, NameTheClassWithItsInterfaceAndItsEvents) {
  for (const Library& library : libraries()) {
    const auto types = typesOf(library.file, library.operations, library.coclass);
    std::vector<std::pair<IID, int>> parts;
    for (UINT i = 0; i < 2; ++i) {
      HREFTYPE reference = 0;
      int flags = 0;
      com::ComPtr<ITypeInfo> part;
      TYPEATTR* attributes = nullptr;
      ASSERT_EQ(types.coclass->GetRefTypeOfImplType(i, &reference), S_OK);
      ASSERT_EQ(types.coclass->GetImplTypeFlags(i, &flags), S_OK);
      ASSERT_EQ(types.coclass->GetRefTypeInfo(reference, part.receive()), S_OK);
      ASSERT_EQ(part->GetTypeAttr(&attributes), S_OK);
      parts.emplace_back(attributes->guid, flags);
      part->ReleaseTypeAttr(attributes);
    }
    EXPECT_TRUE(parts[0].first == library.operations);
    EXPECT_EQ(parts[0].second, IMPLTYPEFLAG_FDEFAULT);
    EXPECT_TRUE(parts[1].first == library.events);
    EXPECT_EQ(parts[1].second, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
  }
}

}  // namespace kelvane::test
