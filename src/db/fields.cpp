// Field collections and fields: definitions of a table, or columns of a
// record set.

#include "field_rules.h"
#include "seluvorne/dao.h"
#include "seluvorne/entry_lock.h"
#include "states.h"

namespace seluvorne::dao {

// ---- Fields -----------------------------------------------------------------

const MemberTable<Fields>& Fields::Members() {
  static const auto table = MemberTable<Fields>("Fields")
                                .get("Count", &Fields::Count)
                                .get("Item", &Fields::ItemOf)
                                .method("Append", &Fields::Append)
                                .defaultMember("Item");
  return table;
}

Fields::Fields(std::vector<std::shared_ptr<Field>> fields, bool appendable)
    : fields_(std::move(fields)), appendable_(appendable) {
  for (const std::shared_ptr<Field>& field : fields_)
    names_.push_back(field->Name());
}

std::int32_t Fields::Count() const {
  EntryLock entry;
  return static_cast<std::int32_t>(fields_.size());
}

const std::shared_ptr<Field>& Fields::ItemOf(const vb::Variant& index) const {
  if (const std::string* name = index.peek<std::string>()) return Item(std::string_view(*name));
  return Item(vb::CLng(index));
}

const std::shared_ptr<Field>& Fields::Item(std::string_view name) const {
  EntryLock entry;
  const std::size_t count = names_.size();
  for (std::size_t tried = 0, i = next_lookup_; tried < count;
       ++tried, i = i + 1 < count ? i + 1 : 0)
    if (detail::NameEqual{}(names_[i], name)) {
      next_lookup_ = i + 1 < count ? i + 1 : 0;
      return fields_[i];
    }
  Raise(errc::kItemNotFound, "(" + std::string(name) + ")");
}

const std::shared_ptr<Field>& Fields::Item(std::int32_t position) const {
  EntryLock entry;
  if (position < 0 || position >= Count()) Raise(errc::kItemNotFound);
  return fields_[position];
}

void Fields::Append(const std::shared_ptr<Field>& field) {
  EntryLock entry;
  if (!field) Raise(errc::kObjectNotSet);
  if (!appendable_) Raise(errc::kInvalidOperation, "(the table is already in a database)");
  db::FieldDefinitionState& definition = field->Definition();
  db::CheckName(definition.definition.name);
  for (std::size_t i = 0; i < fields_.size(); ++i)
    if (fields_[i] == field || detail::NameEqual{}(names_[i], definition.definition.name))
      Raise(errc::kObjectExists);
  fields_.push_back(field);
  names_.push_back(definition.definition.name);
}

// ---- Field ------------------------------------------------------------------

const MemberTable<Field>& Field::Members() {
  static const auto table = MemberTable<Field>("Field")
                                .get("Name", &Field::Name)
                                .get("Type", &Field::Type)
                                .get("Size", &Field::Size)
                                .get("DefaultValue", &Field::DefaultValue)
                                .put("DefaultValue", &Field::SetDefaultValue)
                                .get("AllowZeroLength", &Field::AllowZeroLength)
                                .put("AllowZeroLength", &Field::SetAllowZeroLength)
                                .get("Value", &Field::Value)
                                .put("Value", &Field::SetValue)
                                .defaultMember("Value");
  return table;
}

Field::Field(std::shared_ptr<db::FieldDefinitionState> definition)
    : definition_(std::move(definition)) {}

Field::Field(std::shared_ptr<db::RecordsetState> recordset, int column)
    : recordset_(std::move(recordset)), column_(column) {}

db::FieldDefinitionState& Field::Definition() const {
  if (!definition_) Raise(errc::kInvalidOperation, "(a record set's field has no definition)");
  return *definition_;
}

namespace {
// The definition a record set's column comes from; an empty one for a
// computed column.
const db::FieldDefinition& ColumnDefinition(db::RecordsetState& recordset, int column) {
  static const db::FieldDefinition computed;
  recordset.Use();
  const db::FieldDefinition* definition = recordset.FieldAt(column);
  return definition ? *definition : computed;
}
}  // namespace

std::string Field::Name() const {
  EntryLock entry;
  if (definition_) return definition_->definition.name;
  recordset_->Use();
  return recordset_->columns[column_];
}

std::int16_t Field::Type() const {
  EntryLock entry;
  return definition_ ? definition_->definition.type : ColumnDefinition(*recordset_, column_).type;
}

std::int32_t Field::Size() const {
  EntryLock entry;
  return definition_ ? definition_->definition.size : ColumnDefinition(*recordset_, column_).size;
}

std::string Field::DefaultValue() const {
  EntryLock entry;
  return definition_ ? definition_->definition.default_value
                     : ColumnDefinition(*recordset_, column_).default_value;
}

bool Field::AllowZeroLength() const {
  EntryLock entry;
  return definition_ ? definition_->definition.allow_zero_length
                     : ColumnDefinition(*recordset_, column_).allow_zero_length;
}

void Field::SetDefaultValue(const std::string& expression) {
  EntryLock entry;
  db::FieldDefinitionState& definition = Definition();
  if (definition.fixed) Raise(errc::kInvalidOperation, "(the field's table is in a database)");
  definition.definition.default_value = expression;
}

void Field::SetAllowZeroLength(bool allow) {
  EntryLock entry;
  db::FieldDefinitionState& definition = Definition();
  if (definition.fixed) Raise(errc::kInvalidOperation, "(the field's table is in a database)");
  definition.definition.allow_zero_length = allow;
}

vb::Variant Field::StoredValue(const vb::Variant& value) const {
  EntryLock entry;
  return db::StoredValue(Definition().definition, value);
}

vb::Variant Field::Value() const {
  EntryLock entry;
  if (!recordset_) Raise(errc::kInvalidOperation, "(a field definition has no value)");
  return recordset_->ValueAt(column_);
}

void Field::SetValue(vb::Variant value) {
  EntryLock entry;
  if (!recordset_) Raise(errc::kInvalidOperation, "(a field definition has no value)");
  recordset_->SetValueAt(column_, std::move(value));
}

}  // namespace seluvorne::dao
