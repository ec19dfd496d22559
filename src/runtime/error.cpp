#include "seluvorne/error.h"

#include <utility>

namespace seluvorne {

namespace {

struct Entry {
  int number;
  std::string_view description;
};

// The runtime's descriptions; "…" marks where the detail goes.
constexpr Entry kDescriptions[] = {
    {errc::kInvalidCall, "Invalid procedure call or argument"},
    {errc::kOverflow, "Overflow"},
    {errc::kOutOfMemory, "Out of memory"},
    {errc::kSubscriptOutOfRange, "Subscript out of range"},
    {errc::kDivisionByZero, "Division by zero"},
    {errc::kTypeMismatch, "Type mismatch"},
    {errc::kBadFileName, "Bad file name or number"},
    {errc::kFileNotFound, "File not found"},
    {errc::kPermissionDenied, "Permission denied"},
    {errc::kPathFileAccess, "Path/File access error"},
    {errc::kPathNotFound, "Path not found"},
    {errc::kObjectNotSet, "Object variable or With block variable not set"},
    {errc::kInvalidUseOfNull, "Invalid use of Null"},
    {errc::kCannotCreateObject, "ActiveX component can't create object"},
    {errc::kMemberNotSupported, "Object doesn't support this property or method"},
    {errc::kAutomationError, "Automation error"},
    {errc::kWrongArgumentCount, "Wrong number of arguments or invalid property assignment"},
    {errc::kEngineReserved, "Reserved error (…); there is no message for this error."},
    {errc::kInvalidArgument, "Invalid argument."},
    {errc::kTableExists, "Table '…' already exists."},
    {errc::kUpdateWithoutAddNew, "Update or CancelUpdate without AddNew or Edit."},
    {errc::kNoCurrentRecord, "No current record."},
    {errc::kFileNotFoundDb, "Could not find file '…'."},
    {errc::kDiskFull, "Not enough space on disk."},
    {errc::kReadOnly, "Cannot update. Database or object is read-only."},
    {errc::kDiskError, "Disk or network error."},
    {errc::kInvalidPath, "'…' isn't a valid path."},
    {errc::kCannotOpenFile,
     "The database engine cannot open the file '…'. It is already opened exclusively by another "
     "user, or you need permission to view its data."},
    {errc::kCannotExecuteSelect, "Cannot execute a select query."},
    {errc::kTableNotFound, "The database engine cannot find the input table or query '…'."},
    {errc::kInvalidName,
     "'…' isn't a valid name. Make sure that it doesn't include invalid characters or "
     "punctuation and that it isn't too long."},
    {errc::kInvalidSqlStatement,
     "Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'."},
    {errc::kSyntaxError, "Syntax error in FROM clause."},
    {errc::kTextAfterStatement, "Characters found after end of SQL statement."},
    {errc::kFieldTooSmall,
     "The field is too small to accept the amount of data you attempted to add."},
    {errc::kDatabaseExists, "Database already exists."},
    {errc::kLocked, "Could not update; currently locked."},
    {errc::kInvalidOperation, "Invalid operation."},
    {errc::kInvalidFieldType, "Invalid field data type."},
    {errc::kNoFieldDefined, "No field defined--cannot append TableDef or Index."},
    {errc::kItemNotFound, "Item not found in this collection."},
    {errc::kZeroLengthNotAllowed, "Field '…' cannot be a zero-length string."},
    {errc::kUnrecognizedFormat, "Unrecognized database format '…'."},
    {errc::kNumericOverflow, "Numeric field overflow."},
    {errc::kObjectExists,
     "Cannot append. An object with that name already exists in the collection."},
    {errc::kObjectInvalid, "Object invalid or no longer set."},
    {errc::kConversionError, "Data type conversion error."},
};

constexpr std::string_view kPlaceholder = "…";

}  // namespace

namespace {

// "Error 13 (clsThing): Type mismatch"; without the parentheses when no source is known.
std::string MessageOf(int number, const std::string& source, const std::string& description) {
  std::string message = "Error " + std::to_string(number);
  if (!source.empty()) message += " (" + source + ")";
  return message + ": " + description;
}

}  // namespace

Error::Error(int number_, std::string source_, std::string description_)
    : std::runtime_error(MessageOf(number_, source_, description_)),
      number(number_),
      source(std::move(source_)),
      description(std::move(description_)) {}

std::string_view StandardDescription(int number) {
  for (const Entry& entry : kDescriptions)
    if (entry.number == number) return entry.description;
  return "Application-defined or object-defined error";
}

Error MakeError(int number, std::string_view detail, std::string_view source) {
  std::string description(StandardDescription(number));
  if (std::size_t at = description.find(kPlaceholder); at != std::string::npos)
    description.replace(at, kPlaceholder.size(), detail);
  else if (!detail.empty())
    description.append(" ").append(detail);
  return Error(number, std::string(source), std::move(description));
}

void Raise(int number, std::string_view detail, std::string_view source) {
  throw MakeError(number, detail, source);
}

void RaiseExplained(int number, std::string_view detail, std::string_view explanation,
                    std::string_view source) {
  Error error = MakeError(number, detail, source);
  throw Error(error.number, error.source,
              error.description + " (" + std::string(explanation) + ")");
}

}  // namespace seluvorne
