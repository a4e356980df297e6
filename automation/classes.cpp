#include "automation/classes.hpp"

#include <algorithm>
#include <array>
#include <map>

#include "automation/host_math_utils.hpp"
#include "automation/log_events.hpp"
#include "automation/method.hpp"
#include "vorquill21/vorquill21.hpp"

namespace vorquill21::automation {
namespace {

/// What an object of the class Main serves: the library's, and the objects that hosts were given for its own.
struct MainCore : Main {
  std::map<const void*, Reference<Object>> children;
};

class LogObject;

template <typename Interface>
Reference<Object> Serve(std::shared_ptr<typename Served<Interface>::Core> core) {
  using Serving = std::conditional_t<std::is_same_v<Interface, _CLog>, LogObject, ServedObject<Interface>>;
  return Reference<Object>::Adopt(new Serving(std::move(core)));
}

/// An object of the class for hosts, with an object of the library of its own.
template <typename Interface>
Reference<Object> Make() {
  return Serve<Interface>(std::make_shared<typename Served<Interface>::Core>());
}

/// The object for what an accessor of Main hands out, the same one each time.
template <typename Interface, auto kAccessor>
Reference<IDispatch> Child(MainCore& main) {
  const auto core = std::invoke(kAccessor, main);
  Reference<Object>& child = main.children[core.get()];
  if (!child) child = Serve<Interface>(core);
  return Reference<IDispatch>(child->Dispatch());
}

Reference<IDispatch> GetMathUtils(CInterpolate& interpolate);
void SetMathUtils(CInterpolate& interpolate, _CMathUtils* value);

// Each table is the interface's own structure: the compiler holds order, names and types against the type
// library.
#define VORQUILL21_INHERITED_ENTRIES                                                                \
  .QueryInterface = OfObject<&Object::QueryInterface>, .AddRef = OfObject<&Object::AddRef>,         \
  .Release = OfObject<&Object::Release>, .GetTypeInfoCount = OfObject<&Object::GetTypeInfoCount>,   \
  .GetTypeInfo = OfObject<&Object::GetTypeInfo>, .GetIDsOfNames = OfObject<&Object::GetIDsOfNames>, \
  .Invoke = OfObject<&Object::Invoke>

}  // namespace

// clang-format off
template <>
struct Served<_CTrigonometry> {
  using Core = CTrigonometry;
  static constexpr _CTrigonometryVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .ArcCos = Method<&Core::ArcCos>,
      .ArcSin = Method<&Core::ArcSin>,
      .ArcTan2 = Method<&Core::ArcTan2>,
      .Degrees = Method<&Core::Degrees>,
      .Pi = Method<&Core::Pi>,
      .PolarToXY = Method<&Core::PolarToXY>,
      .Radians = Method<&Core::Radians>,
      .XYToPolar = Method<&Core::XYToPolar>,
  };
  static constexpr ClassEntry kEntry{CLSID_CTrigonometry, IID__CTrigonometry, nullptr, L"CTrigonometry",
                                     &Make<_CTrigonometry>};
};

template <>
struct Served<_CMathUtils> {
  using Core = CMathUtils;
  static constexpr _CMathUtilsVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .ArrayLocate = Method<&Core::ArrayLocate>,
      .CopyArray1D = Method<&Core::CopyArray1D>,
      .CopyArray2D = Method<&Core::CopyArray2D>,
      .CopyArray3D = Method<&Core::CopyArray3D>,
      .DWordGetHighWord = Method<&Core::DWordGetHighWord>,
      .DWordGetLowWord = Method<&Core::DWordGetLowWord>,
      .DWordMake = Method<&Core::DWordMake>,
      .NumbersAreEqual = Method<&Core::NumbersAreEqual>,
      .ArraysAreEqual = Method<&Core::ArraysAreEqual>,
      .ArrayIsMonotonic1D = Method<&Core::ArrayIsMonotonic1D>,
      .IsInBounds = Method<&Core::IsInBounds>,
  };
  static constexpr ClassEntry kEntry{CLSID_CMathUtils, IID__CMathUtils, nullptr, L"CMathUtils",
                                     &Make<_CMathUtils>};
};

template <>
struct Served<_CStatistics> {
  using Core = CStatistics;
  static constexpr _CStatisticsVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .ArithmeticMean = Method<&Core::ArithmeticMean>,
      .Maximum = Method<&Core::Maximum>,
      .Minimum = Method<&Core::Minimum>,
      .StandardDeviation = Method<&Core::StandardDeviation>,
      .StandardDeviationPop = Method<&Core::StandardDeviationPop>,
      .Variance = Method<&Core::Variance>,
      .VariancePop = Method<&Core::VariancePop>,
      .RMS = Method<&Core::RMS>,
  };
  static constexpr ClassEntry kEntry{CLSID_CStatistics, IID__CStatistics, nullptr, L"CStatistics",
                                     &Make<_CStatistics>};
};

template <>
struct Served<_CGeometry> {
  using Core = CGeometry;
  static constexpr _CGeometryVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .AngleBetweenLines = Method<&Core::AngleBetweenLines>,
      .AngleBetweenVectors = Method<&Core::AngleBetweenVectors>,
      .BuildTransformationMatrix = Method<&Core::BuildTransformationMatrix>,
      .IntersectNormalPointToLine = Method<&Core::IntersectNormalPointToLine>,
      .LineDistanceToPoint = Method<&Core::LineDistanceToPoint>,
      .MatrixMultiply = Method<&Core::MatrixMultiply>,
      .TransformPoint = Method<&Core::TransformPoint>,
      .UnitVector3d = Method<&Core::UnitVector3d>,
      .VectorAdd3d = Method<&Core::VectorAdd3d>,
      .VectorCrossProduct3d = Method<&Core::VectorCrossProduct3d>,
      .VectorDotProduct3d = Method<&Core::VectorDotProduct3d>,
      .VectorMagnitude3d = Method<&Core::VectorMagnitude3d>,
      .VectorSubtract3d = Method<&Core::VectorSubtract3d>,
  };
  static constexpr ClassEntry kEntry{CLSID_CGeometry, IID__CGeometry, nullptr, L"CGeometry",
                                     &Make<_CGeometry>};
};

template <>
struct Served<_CInterpolate> {
  using Core = CInterpolate;
  static constexpr _CInterpolateVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .get_moUtils = Method<&GetMathUtils>,
      .putref_moUtils = Method<&SetMathUtils>,
      .OneDLinearInterpolate = Method<&Core::OneDLinearInterpolate>,
      .OneDLinearInterpolateFromPoints = Method<&Core::OneDLinearInterpolateFromPoints>,
      .OneDLinearInterpolateWithBounds = Method<&Core::OneDLinearInterpolateWithBounds>,
      .OneDPolynomialFit = Method<&Core::OneDPolynomialFit>,
      .OneDPolynomialInterpolate = Method<&Core::OneDPolynomialInterpolate>,
      .TwoDPolynomialFit = Method<&Core::TwoDPolynomialFit>,
      .TwoDPolynomialInterpolate = Method<&Core::TwoDPolynomialInterpolate>,
  };
  static constexpr ClassEntry kEntry{CLSID_CInterpolate, IID__CInterpolate, nullptr, L"CInterpolate",
                                     &Make<_CInterpolate>};
};

template <>
struct Served<_CString> {
  using Core = CString;
  static constexpr _CStringVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .CommandLineArgumentIndex = Method<&Core::CommandLineArgumentIndex>,
      .CommandLineArgumentsParse = Method<&Core::CommandLineArgumentsParse>,
      .MidBracketed = Method<&Core::MidBracketed>,
      .ReplaceMulti = Method<&Core::ReplaceMulti>,
      .RTrimMulti = Method<&Core::RTrimMulti>,
      .Split5 = Method<&Core::Split5>,
      .SplitMulti = Method<&Core::SplitMulti>,
      .SelfTest_Main = Method<&Core::SelfTest_Main>,
  };
  static constexpr ClassEntry kEntry{CLSID_CString, IID__CString, nullptr, L"CString", &Make<_CString>};
};

template <>
struct Served<_CFile> {
  using Core = CFile;
  static constexpr _CFileVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .BrowseForFolder = Method<&Core::BrowseForFolder>,
      .CompareFiles = Method<&Core::CompareFiles>,
      .Crc32Make = Method<&Core::Crc32Make>,
      .DirExists = Method<&Core::DirExists>,
      .DirMake = Method<&Core::DirMake>,
      .DirMakeNested = Method<&Core::DirMakeNested>,
      .FileExists = Method<&Core::FileExists>,
      .FileReadAsString = Method<&Core::FileReadAsString>,
      .FileWriteAsString = Method<&Core::FileWriteAsString>,
      .ListFilesMatchingExt = Method<&Core::ListFilesMatchingExt>,
      .OpenDoc = Method<&Core::OpenDoc>,
      .ParseFileDir = Method<&Core::ParseFileDir>,
      .ParseFileExt = Method<&Core::ParseFileExt>,
      .ParseFileName = Method<&Core::ParseFileName>,
      .ParseFileTitle = Method<&Core::ParseFileTitle>,
      .EnsureExtension = Method<&Core::EnsureExtension>,
  };
  static constexpr ClassEntry kEntry{CLSID_CFile, IID__CFile, nullptr, L"CFile", &Make<_CFile>};
};

template <>
struct Served<_COSUtils> {
  using Core = COSUtils;
  static constexpr _COSUtilsVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .GetSpecialFolderPath = Method<&Core::GetSpecialFolderPath>,
  };
  static constexpr ClassEntry kEntry{CLSID_COSUtils, IID__COSUtils, nullptr, L"COSUtils", &Make<_COSUtils>};
};

template <>
struct Served<_CLog> {
  using Core = CLog;
  static constexpr _CLogVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .AddEntry = Method<&Core::AddEntry>,
      .get_Filepath = Method<&Core::Filepath>,
      .Initialise = Method<&Core::Initialise>,
      .get_LogContainsExceptions = Method<&Core::LogContainsExceptions>,
      .get_LogDiagnostics = Method<&Core::LogDiagnostics>,
      .StartLogging = Method<&Core::StartLogging>,
      .StopLogging = Method<&Core::StopLogging>,
      .View = Method<&Core::View>,
      .get_Text = Method<&Core::Text>,
  };
  static constexpr ClassEntry kEntry{CLSID_CLog, IID__CLog, &DIID___CLog, L"CLog", &Make<_CLog>};
};

template <>
struct Served<_CFileStream> {
  using Core = CFileStream;
  static constexpr _CFileStreamVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .AddField = Method<&Core::AddField>,
      .AddTable2d = Method<&Core::AddTable2d>,
      .AddTable3d = Method<&Core::AddTable3d>,
      .FileRead = Method<&Core::FileRead>,
      .FileWrite = Method<&Core::FileWrite>,
      .GetContents = Method<&Core::GetContents>,
      .GetFieldNumber = Method<&Core::GetFieldNumber>,
      .GetFieldString = Method<&Core::GetFieldString>,
      .GetTable2d = Method<&Core::GetTable2d>,
      .GetTable3d = Method<&Core::GetTable3d>,
      .Initialise = Method<&Core::Initialise>,
      .IsCompatibleVersion = Method<&Core::IsCompatibleVersion>,
      .RemoveField = Method<&Core::RemoveField>,
      .SetContents = Method<&Core::SetContents>,
      .FieldExists = Method<&Core::FieldExists>,
      .FileVersion = Method<&Core::FileVersion>,
      .FileVersionNumber = Method<&Core::FileVersionNumber>,
      .FileVersionType = Method<&Core::FileVersionType>,
  };
  static constexpr ClassEntry kEntry{CLSID_CFileStream, IID__CFileStream, nullptr, L"CFileStream",
                                     &Make<_CFileStream>};
};

template <>
struct Served<_CImportColumnData> {
  using Core = CImportColumnData;
  static constexpr _CImportColumnDataVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .get_ColumnCount = Method<&Core::ColumnCount>,
      .get_ColumnData = Method<&Core::ColumnData>,
      .get_ColumnHeaderData = Method<&Core::ColumnHeaderData>,
      .get_DataRowCount = Method<&Core::DataRowCount>,
      .get_Delimiter = Method<Reading(&Core::Delimiter)>,
      .put_Delimiter = Method<Writing(&Core::Delimiter)>,
      .get_Filepath = Method<Reading(&Core::Filepath)>,
      .put_Filepath = Method<Writing(&Core::Filepath)>,
      .get_FirstValueRow = Method<Reading(&Core::FirstValueRow)>,
      .put_FirstValueRow = Method<Writing(&Core::FirstValueRow)>,
      .get_HeaderRow = Method<Reading(&Core::HeaderRow)>,
      .put_HeaderRow = Method<Writing(&Core::HeaderRow)>,
      .Import = Method<&Core::Import>,
      .get_LastImportSuccessful = Method<&Core::LastImportSuccessful>,
      .get_MaxColumns = Method<Reading(&Core::MaxColumns)>,
      .put_MaxColumns = Method<Writing(&Core::MaxColumns)>,
      .OffsetColumnData = Method<&Core::OffsetColumnData>,
      .SettingsReadFromRegistry = Method<&Core::SettingsReadFromRegistry>,
      .SettingsWriteToRegistry = Method<&Core::SettingsWriteToRegistry>,
  };
  static constexpr ClassEntry kEntry{CLSID_CImportColumnData, IID__CImportColumnData, nullptr,
                                     L"CImportColumnData", &Make<_CImportColumnData>};
};

template <>
struct Served<_Main> {
  using Core = MainCore;
  static constexpr _MainVtbl kTable{
      VORQUILL21_INHERITED_ENTRIES,
      .LibFile = Method<&Child<_CFile, &Main::LibFile>>,
      .LibGeometry = Method<&Child<_CGeometry, &Main::LibGeometry>>,
      .LibInterpolate = Method<&Child<_CInterpolate, &Main::LibInterpolate>>,
      .LibMathUtils = Method<&Child<_CMathUtils, &Main::LibMathUtils>>,
      .LibStatistics = Method<&Child<_CStatistics, &Main::LibStatistics>>,
      .LibTrigonometry = Method<&Child<_CTrigonometry, &Main::LibTrigonometry>>,
      .Initialise = Method<&Core::Initialise>,
      .LibString = Method<&Child<_CString, &Main::LibString>>,
      .LibLog = Method<&Child<_CLog, &Main::LibLog>>,
      .LibFilestream = Method<&Child<_CFileStream, &Main::LibFilestream>>,
      .LibOSUtils = Method<&Child<_COSUtils, &Main::LibOSUtils>>,
  };
  static constexpr ClassEntry kEntry{CLSID_Main, IID__Main, nullptr, L"Main", &Make<_Main>};
};
#undef VORQUILL21_INHERITED_ENTRIES
// clang-format on

namespace {

/// The object of a log, which has events.
class LogObject final : public ServedObject<_CLog> {
 public:
  explicit LogObject(const std::shared_ptr<CLog>& core)
      : ServedObject(core), events_(static_cast<ISupportErrorInfo&>(*this), core) {}

 private:
  void* OwnInterface(REFIID interfaceId) noexcept override {
    return interfaceId == IID_IConnectionPointContainer ? static_cast<IConnectionPointContainer*>(&events_)
                                                        : nullptr;
  }

  LogEvents events_;
};

Reference<IDispatch> GetMathUtils(CInterpolate& interpolate) {
  if (interpolate.moUtils == nullptr) return nullptr;
  if (const HostObject* host = HostObjectOf(interpolate.moUtils)) return host->object;
  const Reference<Object> served = Serve<_CMathUtils>(interpolate.moUtils);
  interpolate.moUtils = WithHostObject({interpolate.moUtils, Reference<IDispatch>(served->Dispatch())});
  return Reference<IDispatch>(served->Dispatch());
}

void SetMathUtils(CInterpolate& interpolate, _CMathUtils* value) {
  auto* const dispatch = reinterpret_cast<IDispatch*>(value);
  if (dispatch == nullptr) {
    interpolate.moUtils = nullptr;
    return;
  }
  const Reference<Object> own = OwnObject(dispatch);
  if (own && &own->Class() == &Served<_CMathUtils>::kEntry) {
    const auto& served = static_cast<const ServedObject<_CMathUtils>&>(*own);
    interpolate.moUtils = WithHostObject({served.SharedCore(), Reference<IDispatch>(own->Dispatch())});
    return;
  }
  const auto adapter = std::make_shared<HostMathUtils>(Reference<IDispatch>(dispatch));
  Reference<IDispatch> object;
  dispatch->QueryInterface(IID__CMathUtils, reinterpret_cast<void**>(object.Receive()));
  if (!object) object = Reference<IDispatch>(Serve<_CMathUtils>(adapter)->Dispatch());
  interpolate.moUtils = WithHostObject({adapter, object});
}

constexpr std::array kClasses{
    &Served<_Main>::kEntry,        &Served<_CTrigonometry>::kEntry, &Served<_CMathUtils>::kEntry,
    &Served<_CStatistics>::kEntry, &Served<_CGeometry>::kEntry,     &Served<_CInterpolate>::kEntry,
    &Served<_CString>::kEntry,     &Served<_CFile>::kEntry,         &Served<_COSUtils>::kEntry,
    &Served<_CLog>::kEntry,        &Served<_CFileStream>::kEntry,   &Served<_CImportColumnData>::kEntry,
};

}  // namespace

std::span<const ClassEntry* const> AllClasses() noexcept {
  return kClasses;
}

const ClassEntry* FindClass(REFCLSID classId) noexcept {
  const auto found = std::find_if(kClasses.begin(), kClasses.end(),
                                  [&](const ClassEntry* entry) { return entry->classId == classId; });
  return found == kClasses.end() ? nullptr : *found;
}

}  // namespace vorquill21::automation
