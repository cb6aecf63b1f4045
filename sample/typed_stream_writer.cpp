#include "sample/typed_stream_writer.h"

#include <QtEndian>

namespace orvandel {

namespace {

// Tags of the stream. A byte that is none of them is a number.
constexpr unsigned char kTwoBytes = 0x81, kFourBytes = 0x82, kNew = 0x84, kNil = 0x85, kEnd = 0x86;
constexpr int kFirstReference = 0x92;
constexpr int kFormat = 4;  // of the stream itself
constexpr int kSystem = 1000;

using Class = TypedStreamWriter::Class;
using ClassChain = TypedStreamWriter::ClassChain;

const ClassChain kString = {{"NSString", 1}, {"NSObject", 0}};
const ClassChain kMutableString = {{"NSMutableString", 1}, {"NSString", 1}, {"NSObject", 0}};
const ClassChain kAttributed = {{"NSAttributedString", 0}, {"NSObject", 0}};
const ClassChain kMutableAttributed = {
    {"NSMutableAttributedString", 0}, {"NSAttributedString", 0}, {"NSObject", 0}};
const ClassChain kDictionary = {{"NSDictionary", 0}, {"NSObject", 0}};
const ClassChain kNumber = {{"NSNumber", 0}, {"NSValue", 0}, {"NSObject", 0}};

/// A part of a message: consecutive characters with the same attributes.
struct Run {
  int length = 0;  // in UTF-16 units
  int part = 0;
  QString attachment;  // null for text
};

std::vector<Run> runsOf(const QString& text, const QStringList& attachments) {
  std::vector<Run> runs;
  int attachment = 0;
  bool inText = false;
  for (const QChar character : text) {
    const bool isAttachment = character == QChar::ObjectReplacementCharacter;
    if (!isAttachment && inText) {
      ++runs.back().length;
      continue;
    }
    const QString guid = isAttachment ? attachments.value(attachment++) : QString();
    runs.push_back({1, static_cast<int>(runs.size()), guid});
    inText = !isAttachment;
  }
  return runs;
}

/// Writes the attributes of runs. Keys are written once, as they are constants of the program that archives.
class RunWriter {
 public:
  explicit RunWriter(TypedStreamWriter& stream) : m_stream(stream) {}

  void write(const Run& run) {
    m_stream.type("iI");
    m_stream.number(++m_dictionaries);
    m_stream.number(run.length);
    m_stream.type("@");
    m_stream.begin(kDictionary);
    m_stream.type("i");
    m_stream.number(run.attachment.isNull() ? 1 : 2);
    if (!run.attachment.isNull()) {
      key("__kIMFileTransferGUIDAttributeName");
      m_stream.type("@");
      string(run.attachment.toUtf8());
    }
    key("__kIMMessagePartAttributeName");
    m_stream.type("@");
    m_stream.begin(kNumber);
    m_stream.type("*");
    m_stream.cString("i");
    m_stream.type("i");
    m_stream.number(run.part);
    m_stream.end();
    m_stream.end();
  }

 private:
  int string(const QByteArray& text) {
    const int object = m_stream.begin(kString);
    m_stream.type("+");
    m_stream.bytes(text);
    m_stream.end();
    return object;
  }

  void key(const QByteArray& name) {
    m_stream.type("@");
    const auto known = m_keys.find(name);
    if (known == m_keys.end()) {
      m_keys[name] = string(name);
    } else {
      m_stream.reference(known->second);
    }
  }

  TypedStreamWriter& m_stream;
  std::map<QByteArray, int> m_keys;
  int m_dictionaries = 0;
};

}  // namespace

TypedStreamWriter::TypedStreamWriter() {
  number(kFormat);
  bytes("streamtyped");
  number(kSystem);
}

void TypedStreamWriter::number(qint64 value) {
  // Signed: what one or two bytes can't hold as a positive number takes the next size.
  if (value <= INT8_MAX) {
    m_out.append(static_cast<char>(value));
  } else if (value <= INT16_MAX) {
    char raw[2];
    qToLittleEndian(static_cast<qint16>(value), raw);
    m_out.append(static_cast<char>(kTwoBytes)).append(raw, sizeof raw);
  } else {
    char raw[4];
    qToLittleEndian(static_cast<qint32>(value), raw);
    m_out.append(static_cast<char>(kFourBytes)).append(raw, sizeof raw);
  }
}

void TypedStreamWriter::bytes(const QByteArray& value) {
  number(value.size());
  m_out.append(value);
}

void TypedStreamWriter::referTo(int place) {
  // A reference is a signed number: 0x92 is -110, and what follows 0xFF is 0.
  const int reference = kFirstReference + place;
  if (reference > UINT8_MAX) return number(reference - 0x100);
  m_out.append(static_cast<char>(reference));
}

void TypedStreamWriter::sharedString(const QByteArray& text) {
  const auto [it, isNew] = m_strings.try_emplace(text, static_cast<int>(m_strings.size()));
  if (!isNew) return referTo(it->second);
  m_out.append(static_cast<char>(kNew));
  bytes(text);
}

void TypedStreamWriter::type(const QByteArray& description) {
  sharedString(description);
}

void TypedStreamWriter::cString(const QByteArray& value) {
  const auto [it, isNew] = m_cStrings.try_emplace(value, m_objects);
  if (!isNew) return referTo(it->second);
  ++m_objects;
  m_out.append(static_cast<char>(kNew));
  sharedString(value);
}

int TypedStreamWriter::begin(const ClassChain& classes) {
  const int object = m_objects++;
  m_out.append(static_cast<char>(kNew));
  for (const Class& entry : classes) {
    const auto [it, isNew] = m_classes.try_emplace(entry.name, m_objects);
    if (!isNew) {
      referTo(it->second);
      return object;
    }
    ++m_objects;
    m_out.append(static_cast<char>(kNew));
    sharedString(entry.name);
    number(entry.version);
  }
  m_out.append(static_cast<char>(kNil));
  return object;
}

void TypedStreamWriter::end() {
  m_out.append(static_cast<char>(kEnd));
}

void TypedStreamWriter::reference(int object) {
  referTo(object);
}

QByteArray attributedBody(const QString& text, bool isMutable, const QStringList& attachments) {
  TypedStreamWriter stream;
  stream.type("@");
  stream.begin(isMutable ? kMutableAttributed : kAttributed);
  stream.type("@");
  stream.begin(isMutable ? kMutableString : kString);
  stream.type("+");
  stream.bytes(text.toUtf8());
  stream.end();
  RunWriter runs(stream);
  for (const Run& run : runsOf(text, attachments)) runs.write(run);
  stream.end();
  return stream.stream();
}

}  // namespace orvandel
