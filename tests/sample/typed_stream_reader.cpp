#include "tests/sample/typed_stream_reader.h"

#include <stdexcept>

namespace orvandel {

namespace {

constexpr int kTwoBytes = 0x81, kFourBytes = 0x82, kNew = 0x84, kNil = 0x85, kEnd = 0x86, kFirst = 0x92;

class Reader {
 public:
  explicit Reader(const std::string& strBytes) : m_strBytes(strBytes) {}

  MessageBody Read() {
    MessageBody body;
    Expect(Number() == 4 && Bytes() == "streamtyped" && Number() == 1000, "head");
    ExpectType("@");
    body.classes.push_back(BeginObject());
    ExpectType("@");
    body.classes.push_back(BeginObject());
    ExpectType("+");
    const size_t nStart = m_nPlace;
    body.strText = Bytes();
    body.nLengthBytes = m_nPlace - nStart - body.strText.size();
    ExpectByte(kEnd);
    std::map<int64_t, BodyRun> dictionaries;
    while (Peek() != kEnd) {
      ExpectType("iI");
      const int64_t nDictionary = Number(), nLength = Number();
      if (dictionaries.count(nDictionary) == 0) dictionaries[nDictionary] = ReadDictionary();
      body.runs.push_back(dictionaries[nDictionary]);
      body.runs.back().nLength = nLength;
    }
    ExpectByte(kEnd);
    Expect(m_nPlace == m_strBytes.size(), "bytes behind the end");
    return body;
  }

 private:
  void Expect(bool bTrue, const std::string& strWhat) const {
    if (!bTrue) throw std::runtime_error(strWhat + " before byte " + std::to_string(m_nPlace));
  }
  int Peek() const {
    Expect(m_nPlace < m_strBytes.size(), "end of the stream");
    return static_cast<unsigned char>(m_strBytes[m_nPlace]);
  }
  int Byte() {
    const int nByte = Peek();
    ++m_nPlace;
    return nByte;
  }
  void ExpectByte(int nByte) { Expect(Byte() == nByte, "another byte than " + std::to_string(nByte)); }

  int64_t Number() {
    const int nByte = Byte();
    if (nByte < 0x80) return nByte;
    Expect(nByte == kTwoBytes || nByte == kFourBytes, "a number");
    const int nSize = nByte == kTwoBytes ? 2 : 4;
    uint32_t nNumber = 0;
    for (int i = 0; i < nSize; ++i) nNumber |= static_cast<uint32_t>(Byte()) << (8 * i);
    return nSize == 2 ? static_cast<int16_t>(nNumber) : static_cast<int32_t>(nNumber);
  }

  std::string Bytes() {
    const int64_t nSize = Number();
    Expect(nSize >= 0 && static_cast<size_t>(nSize) <= m_strBytes.size() - m_nPlace, "a length");
    m_nPlace += static_cast<size_t>(nSize);
    return m_strBytes.substr(m_nPlace - static_cast<size_t>(nSize), static_cast<size_t>(nSize));
  }

  std::string SharedString() {
    const int nByte = Byte();
    if (nByte == kNew) {
      m_strings.push_back(Bytes());
      return m_strings.back();
    }
    const auto nPlace = static_cast<size_t>(nByte - kFirst);
    Expect(nByte >= kFirst && nPlace < m_strings.size(), "a shared string");
    return m_strings[nPlace];
  }

  void ExpectType(const std::string& strType) { Expect(SharedString() == strType, "type " + strType); }

  const std::string& Referred(int nByte) {
    const auto nPlace = static_cast<size_t>(nByte - kFirst);
    Expect(nByte >= kFirst && nPlace < m_objects.size(), "an object");
    return m_objects[nPlace];
  }

  /// @return the class's name. Objects are in the table as "object" and later their text, classes by name.
  std::string BeginObject() {
    ExpectByte(kNew);
    m_objects.push_back("object");
    std::string strFirst;
    for (;;) {
      const int nByte = Byte();
      if (nByte == kNil) return strFirst;
      if (nByte != kNew) {
        const std::string strName = Referred(nByte);
        return strFirst.empty() ? strName : strFirst;
      }
      const std::string strName = SharedString();
      Expect(Number() == (strName == "NSString" || strName == "NSMutableString" ? 1 : 0), "a version");
      m_objects.push_back(strName);
      if (strFirst.empty()) strFirst = strName;
    }
  }

  std::string Text() {
    ExpectType("@");
    if (Peek() >= kFirst) return Referred(Byte());
    const size_t nObject = m_objects.size();
    Expect(BeginObject() == "NSString", "a string");
    ExpectType("+");
    m_objects[nObject] = Bytes();
    ExpectByte(kEnd);
    return m_objects[nObject];
  }

  int64_t NumberObject() {
    ExpectType("@");
    Expect(BeginObject() == "NSNumber", "a number");
    ExpectType("*");
    if (Peek() == kNew) {
      Byte();
      m_objects.push_back(SharedString());
      Expect(m_objects.back() == "i", "the type of a number");
    } else {
      Expect(Referred(Byte()) == "i", "the type of a number");
    }
    ExpectType("i");
    const int64_t nValue = Number();
    ExpectByte(kEnd);
    return nValue;
  }

  BodyRun ReadDictionary() {
    BodyRun run;
    ExpectType("@");
    Expect(BeginObject() == "NSDictionary", "a dictionary");
    ExpectType("i");
    for (int64_t nLeft = Number(); nLeft > 0; --nLeft) {
      const std::string strKey = Text();
      if (strKey == "__kIMMessagePartAttributeName")
        run.nPart = NumberObject();
      else if (strKey == "__kIMFileTransferGUIDAttributeName")
        run.strAttachment = Text();
      else
        Expect(false, "key " + strKey);
    }
    ExpectByte(kEnd);
    return run;
  }

  const std::string& m_strBytes;
  size_t m_nPlace = 0;
  std::vector<std::string> m_strings, m_objects;
};

}  // namespace

MessageBody ReadMessageBody(const std::string& strBytes) {
  return Reader(strBytes).Read();
}

}  // namespace orvandel
