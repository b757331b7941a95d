#include "store/long_string.h"

#include <cstdlib>
#include <cstring>

#include "frame/errors.h"
#include "store/names.h"

namespace korel {

namespace {

// The record that a text's characters lead to, by the pointer in front of them.
struct TextRecord {
  std::size_t capacity;  // characters that the buffer holds, the terminator included
  std::size_t length;    // characters in use, without the terminator
  char* buffer;          // the pointer to this record, then the characters
};

constexpr std::size_t firstCapacity = 256;

char* charactersOf(TextRecord* record) { return record->buffer + sizeof(TextRecord*); }

TextRecord* recordOf(const char* text) {
  TextRecord* record;
  std::memcpy(&record, text - sizeof record, sizeof record);
  return record;
}

// Moves the text to a buffer that holds `needed` characters and the terminator. The factor 3/2
// keeps the cost of many appends linear.
char* grow(TextRecord* record, std::size_t needed) {
  std::size_t capacity = record->capacity;
  while (capacity <= needed) capacity = capacity * 3 / 2;
  auto* buffer = static_cast<char*>(std::realloc(record->buffer, sizeof(TextRecord*) + capacity));
  if (buffer == nullptr) notimpl("not enough memory for text");
  record->buffer = buffer;
  record->capacity = capacity;
  return charactersOf(record);
}

}  // namespace

char* NewLongString() {
  auto* record = static_cast<TextRecord*>(std::malloc(sizeof(TextRecord)));
  if (record == nullptr) notimpl("not enough memory for text");
  record->capacity = firstCapacity;
  record->length = 0;
  record->buffer = static_cast<char*>(std::malloc(sizeof(TextRecord*) + firstCapacity));
  if (record->buffer == nullptr) {
    std::free(record);
    notimpl("not enough memory for text");
  }
  std::memcpy(record->buffer, &record, sizeof record);
  char* text = charactersOf(record);
  text[0] = '\0';
  return text;
}

char* AppendToString(char* text, int c) {
  TextRecord* record = recordOf(text);
  if (record->length + 1 == record->capacity) text = grow(record, record->length + 1);
  text[record->length++] = static_cast<char>(c);
  text[record->length] = '\0';
  return text;
}

char* AppendStringToString(char* text, const char* tail) {
  TextRecord* record = recordOf(text);
  std::size_t added = std::strlen(tail);
  if (record->length + added >= record->capacity) text = grow(record, record->length + added);
  std::memcpy(text + record->length, tail, added + 1);
  record->length += added;
  return text;
}

std::size_t LongStringLength(const char* text) { return recordOf(text)->length; }

void DisposeString(char* text) {
  if (text == nullptr) return;
  TextRecord* record = recordOf(text);
  std::free(record->buffer);
  std::free(record);
}

DAG StringToName(char* text) {
  DAG name = naminstall(text);
  DisposeString(text);
  return name;
}

DAG StringToMString(char* text) {
  DAG string = strinstall(text);
  DisposeString(text);
  return string;
}

}  // namespace korel
