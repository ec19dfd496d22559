// seluvorne-jet-reader FILE: writes a legacy Jet 3/4 database's user tables
// to standard output in the stream format of src/legacy/jet_stream.h.
//
// It is the only program that links libmdb, and it runs as a child of the
// library so that a damaged file can crash it, hang it or make it allocate
// without harm to the host. It checks nothing beyond what it must to write a
// well-formed stream; the library validates the stream and compares the rows
// read with each table's recorded row count.
//
// Rows are read through libmdb's bound columns (mdb_fetch_row), which give
// Null and "" alike as zero-length values; each row is therefore cracked
// again (mdb_crack_row) for its null flags.

// glib before libmdb: its header opens extern "C" around glib's C++ parts.
#include <glib.h>
#include <mdbtools.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

std::string out;  // the stream, written in large pieces

void Flush() {
  if (!out.empty() && std::fwrite(out.data(), 1, out.size(), stdout) != out.size()) std::exit(3);
  out.clear();
}

void Token(std::string_view text) {
  out += ' ';
  out += std::to_string(text.size());
  out += ':';
  out += text;
}

void Number(long long value) {
  out += ' ';
  out += std::to_string(value);
}

void EndLine() {
  out += '\n';
  if (out.size() > (1u << 16)) Flush();
}

[[noreturn]] void Fail(std::string_view message) {
  out += 'X';
  Token(message);
  EndLine();
  Flush();
  std::fflush(stdout);
  std::exit(2);
}

// The field's size as the engine counts it: characters for text (Jet 4
// stores two bytes per character), bytes otherwise.
int FieldSize(MdbHandle* mdb, const MdbColumn* column) {
  if (column->col_type == MDB_TEXT && IS_JET4(mdb)) return column->col_size / 2;
  return column->col_size;
}

void WriteTable(MdbHandle* mdb, MdbCatalogEntry* entry) {
  MdbTableDef* table = mdb_read_table(entry);
  if (!table) Fail(std::string("cannot read the definition of table ") + entry->object_name);
  if (!mdb_read_columns(table))
    Fail(std::string("cannot read the fields of ") + entry->object_name);
  mdb_rewind_table(table);

  out += 'T';
  Token(table->name);
  Number(table->num_rows);
  Number(table->num_cols);
  EndLine();

  std::vector<std::vector<char>> buffers(table->num_cols);
  std::vector<int> lengths(table->num_cols);
  for (unsigned i = 0; i < table->num_cols; ++i) {
    auto* column = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, i));
    out += 'F';
    Token(column->name);
    Number(column->col_type);
    Number(FieldSize(mdb, column));
    const char* default_value = mdb_col_get_prop(column, "DefaultValue");
    if (default_value)
      Token(default_value);
    else
      out += " -";
    const char* allow_zero_length = mdb_col_get_prop(column, "AllowZeroLength");
    Number(allow_zero_length && std::strcmp(allow_zero_length, "yes") == 0 ? 1 : 0);
    EndLine();
    buffers[i].resize(MDB_BIND_SIZE);
    mdb_bind_column(table, static_cast<int>(i) + 1, buffers[i].data(), &lengths[i]);
  }

  std::vector<MdbField> fields(table->num_cols);
  std::vector<unsigned char> is_null(table->num_cols);
  long long rows = 0;
  while (mdb_fetch_row(table)) {
    // mdb_fetch_row leaves the row's page in pg_buf and cur_row one past it.
    int start = 0;
    size_t size = 0;
    if (mdb_find_row(mdb, static_cast<int>(table->cur_row) - 1, &start, &size) != 0 ||
        mdb_crack_row(table, start, size, fields.data()) != static_cast<int>(table->num_cols))
      Fail(std::string("cannot read a row of ") + table->name);
    for (unsigned i = 0; i < table->num_cols; ++i) {
      int column = fields[i].colnum;
      if (column < 0 || column >= static_cast<int>(table->num_cols))
        Fail(std::string("bad field number in a row of ") + table->name);
      is_null[column] = fields[i].is_null;
    }
    out += 'R';
    for (unsigned i = 0; i < table->num_cols; ++i) {
      if (is_null[i])
        out += " -";
      else
        Token(std::string_view(buffers[i].data(), static_cast<size_t>(lengths[i])));
    }
    EndLine();
    ++rows;
  }
  out += 'E';
  Number(rows);
  EndLine();
  mdb_free_tabledef(table);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: seluvorne-jet-reader FILE\n");
    return 64;
  }
  // Jet 3 keeps text in the file's code page; libmdb decodes it with the
  // character set it is told, so tell it the one the header names.
  MdbHandle* mdb = mdb_open(argv[1], MDB_NOFLAGS);
  if (mdb && IS_JET3(mdb) && !std::getenv("MDB_JET3_CHARSET") && mdb->f->code_page != 0) {
    std::string charset = "CP" + std::to_string(mdb->f->code_page);
    setenv("MDB_JET3_CHARSET", charset.c_str(), 1);
    mdb_close(mdb);
    mdb = mdb_open(argv[1], MDB_NOFLAGS);
  }
  if (!mdb) Fail("not a Jet database");
  mdb_set_bind_size(mdb, MDB_BIND_SIZE);

  out += 'H';
  Number(1);
  Number(IS_JET4(mdb) ? 4 : 3);
  Number(mdb->f->code_page);
  EndLine();

  if (!mdb_read_catalog(mdb, MDB_TABLE)) Fail("cannot read the catalogue");
  for (unsigned i = 0; i < mdb->num_catalog; ++i) {
    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
    if (entry->object_type != MDB_TABLE || !mdb_is_user_table(entry)) continue;
    WriteTable(mdb, entry);
  }
  out += "Z\n";
  Flush();
  mdb_close(mdb);
  return std::fflush(stdout) == 0 ? 0 : 3;
}
