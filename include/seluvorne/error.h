// The one exception type of the library.
//
// Every failure that reaches a client is an Error carrying the runtime's error
// number, the component that raised it and the runtime's description for that
// number. Numbers and descriptions are those the suite's clients test for, so
// they never change; detail (a file name, the engine's own message) is put into
// the description where the runtime puts it.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace seluvorne {

// Error numbers raised by the library, named for readability at the raise site.
namespace errc {
inline constexpr int kInvalidCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kDivisionByZero = 11;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kBadFileName = 52;
inline constexpr int kFileNotFound = 53;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kPathFileAccess = 75;
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidUseOfNull = 94;
inline constexpr int kCannotCreateObject = 429;
inline constexpr int kMemberNotSupported = 438;
inline constexpr int kAutomationError = 440;
inline constexpr int kWrongArgumentCount = 450;
inline constexpr int kEngineReserved = 3000;
inline constexpr int kInvalidArgument = 3001;
inline constexpr int kTableExists = 3010;
inline constexpr int kUpdateWithoutAddNew = 3020;
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kFileNotFoundDb = 3024;
inline constexpr int kDiskFull = 3026;
inline constexpr int kReadOnly = 3027;
inline constexpr int kDiskError = 3043;
inline constexpr int kInvalidPath = 3044;
inline constexpr int kCannotOpenFile = 3051;
inline constexpr int kCannotExecuteSelect = 3065;
inline constexpr int kTableNotFound = 3078;
inline constexpr int kInvalidName = 3125;
inline constexpr int kInvalidSqlStatement = 3129;
inline constexpr int kSyntaxError = 3131;
inline constexpr int kTextAfterStatement = 3142;
inline constexpr int kFieldTooSmall = 3163;
inline constexpr int kDatabaseExists = 3204;
inline constexpr int kLocked = 3218;
inline constexpr int kInvalidOperation = 3219;
inline constexpr int kInvalidFieldType = 3259;
inline constexpr int kNoFieldDefined = 3264;
inline constexpr int kItemNotFound = 3265;
inline constexpr int kZeroLengthNotAllowed = 3315;
inline constexpr int kUnrecognizedFormat = 3343;
inline constexpr int kNumericOverflow = 3349;
inline constexpr int kObjectExists = 3367;
inline constexpr int kObjectInvalid = 3420;
inline constexpr int kConversionError = 3421;
}  // namespace errc

// The source named by errors the library raises itself.
inline constexpr std::string_view kLibrarySource = "SeluVorneDS";

class Error : public std::runtime_error {
 public:
  Error(int number, std::string source, std::string description);

  int number;
  std::string source;
  std::string description;
};

// The runtime's description for `number` ("Overflow", "Could not find file '…'.").
// Unknown numbers answer "Application-defined or object-defined error".
std::string_view StandardDescription(int number);

// Builds the error for `number` from its standard description. A description
// with a "…" placeholder gets `detail` in its place; any other gets `detail`
// appended after a blank, when there is one.
Error MakeError(int number, std::string_view detail = {}, std::string_view source = kLibrarySource);

[[noreturn]] void Raise(int number, std::string_view detail = {},
                        std::string_view source = kLibrarySource);

// Raises MakeError(number, detail, source) with `explanation` after its
// description, in parentheses: what was found and what to do about it.
[[noreturn]] void RaiseExplained(int number, std::string_view detail, std::string_view explanation,
                                 std::string_view source = kLibrarySource);

}  // namespace seluvorne
