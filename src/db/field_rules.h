// The rules a field applies to the values stored in it, in one place: the
// record sets apply them at Update, TableDefs.Append to default values.
#pragma once

#include "catalogue.h"
#include "seluvorne/variant.h"

namespace seluvorne::db {

// Raises 3259 for a type other than dbInteger or dbText, 5 for a text size
// outside 1 to 255, and whatever StoredValue raises for the default value.
void CheckFieldDefinition(const FieldDefinition& field);

// The value the field stores for `value`: Null for Null or Empty; for an
// integer field the number rounded half to even (3421 for a value that is no
// number, 3349 outside 16 bits); for a text field the value as text (3163
// when longer than the field's size in characters, 3315 for "" where the
// field does not allow it).
vb::Variant StoredValue(const FieldDefinition& field, const vb::Variant& value);

// The value of a new row's field that is not set: its default value, or Null.
vb::Variant DefaultValue(const FieldDefinition& field);

}  // namespace seluvorne::db
