#include "embedded/dxf/tokenizer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "embedded/dxf/reader.h"

namespace sheafwork::embedded {
namespace {

using ::testing::HasSubstr;

struct Read {
  int code;
  std::string value;
  std::size_t line;
  bool operator==(const Read&) const = default;
};

void PrintTo(const Read& r, std::ostream* os) {
  *os << "{" << r.code << ", \"" << r.value << "\", " << r.line << "}";
}

std::vector<Read> Tokenize(std::string_view bytes) {
  Tokenizer t(bytes, "t.dxf");
  std::vector<Read> out;
  Tag tag;
  while (t.Next(tag)) out.push_back({tag.code, std::string(tag.value), tag.line});
  return out;
}

struct AsciiCase {
  const char* what;
  std::string input;
  std::vector<Read> expected;
};

TEST(TokenizerAscii, SplitsTagsWhateverTheLineEnds) {
  const std::vector<Read> tags = {{0, "SECTION", 1}, {2, "HEADER", 3}};
  const std::vector<AsciiCase> cases = {
      {"LF", "0\nSECTION\n2\nHEADER\n", tags},
      {"CR LF", "0\r\nSECTION\r\n2\r\nHEADER\r\n", tags},
      {"lone CR", "0\rSECTION\r2\rHEADER\r", tags},
      {"no final line end", "0\nSECTION\n2\nHEADER", tags},
      {"byte-order mark",
       "\xEF\xBB\xBF"
       "0\nSECTION\n2\nHEADER\n",
       tags},
      {"right-aligned codes", "  0\nSECTION\n  2\nHEADER\n", tags},
      {"code with trailing blanks", "0 \t\nSECTION\n2\nHEADER\n", tags},
      {"comments skipped",
       "999\nmade by hand\n0\nSECTION\n999\n\n2\nHEADER\n",
       {{0, "SECTION", 3}, {2, "HEADER", 7}}},
      {"stops at EOF, garbage ignored", "0\nSECTION\n2\nHEADER\n0\nEOF\n\x01garbage\nabc", tags},
      {"string values keep their spaces", "1\n  two words \n", {{1, "  two words ", 1}}},
      {"empty value", "1\n\n0\nEOF\n", {{1, "", 1}}},
      {"trailing blank lines", "0\nSECTION\n2\nHEADER\n\n\n  \n", tags},
  };
  for (const AsciiCase& c : cases) EXPECT_EQ(Tokenize(c.input), c.expected) << c.what;
}

TEST(TokenizerAscii, ReadsNumbersInEveryCommonSpelling) {
  struct NumberCase {
    std::string value;
    std::optional<double> real;
    std::optional<std::int64_t> integer;
  };
  const std::vector<NumberCase> cases = {
      {"     1", 1, 1},
      {"-12", -12, -12},
      {"0.0", 0, 0},
      {"1e+20", 1e20, std::nullopt},
      {"1.000000000000E+20", 1e20, std::nullopt},
      {"+2.5", 2.5, 2},
      {"1.0", 1, 1},
      {"abc", std::nullopt, std::nullopt},
      {"1.5x", std::nullopt, std::nullopt},
      {"", std::nullopt, std::nullopt},
  };
  for (const NumberCase& c : cases) {
    const std::string text = "40\n" + c.value + "\n";
    Tokenizer t(text, "n.dxf");
    Tag tag;
    ASSERT_TRUE(t.Next(tag)) << c.value;
    EXPECT_EQ(tag.Double(), c.real) << c.value;
    if (c.integer) {
      EXPECT_EQ(tag.Integer(), c.integer) << c.value;
    }
    if (!c.real) {
      EXPECT_EQ(tag.Integer(), std::nullopt) << c.value;
    }
  }
}

TEST(TokenizerAscii, MalformedInputNamesTheLine) {
  struct ErrorCase {
    std::string input;
    std::vector<std::string> parts;
  };
  const std::vector<ErrorCase> cases = {
      {"0\nSECTION\nabc\nx\n", {"t.dxf, ligne 3", "code de groupe attendu", "« abc »"}},
      {"0\nSECTION\n2\n", {"t.dxf, ligne 4", "fin de fichier inattendue : valeur du code 2"}},
      {"0\r\nSECTION\r\n10", {"ligne 4", "valeur du code 10 attendue"}},
      {"0\nSECTION\n12345678\nx\n", {"ligne 3", "« 12345678 »"}},
      {"0\nSECTION\n\nx\n", {"ligne 3", "code de groupe attendu"}},
  };
  for (const ErrorCase& c : cases) {
    try {
      Tokenize(c.input);
      ADD_FAILURE() << "no error for " << c.input;
    } catch (const DxfError& e) {
      for (const std::string& part : c.parts) EXPECT_THAT(e.what(), HasSubstr(part)) << c.input;
    }
  }
}

// Binary files, written here tag by tag.
class BinaryWriter {
 public:
  explicit BinaryWriter(bool shortCodes) : shortCodes_(shortCodes) {
    bytes_.assign("AutoCAD Binary DXF\r\n\x1a\0", 22);
  }
  BinaryWriter& Code(int code) {
    if (shortCodes_ && code < 255) {
      bytes_ += static_cast<char>(code);
    } else {
      if (shortCodes_) bytes_ += '\xff';
      bytes_ += static_cast<char>(code & 0xFF);
      bytes_ += static_cast<char>(code >> 8);
    }
    return *this;
  }
  BinaryWriter& String(int code, std::string_view s) {
    Code(code);
    bytes_.append(s);
    bytes_ += '\0';
    return *this;
  }
  template <typename T>
  BinaryWriter& Value(int code, T v) {
    Code(code);
    char raw[sizeof(T)];
    std::memcpy(raw, &v, sizeof(T));
    bytes_.append(raw, sizeof(T));
    return *this;
  }
  const std::string& Bytes() const { return bytes_; }

 private:
  bool shortCodes_;
  std::string bytes_;
};

BinaryWriter SampleBinary(bool shortCodes, const char* version) {
  BinaryWriter w(shortCodes);
  w.String(0, "SECTION").String(2, "HEADER").String(9, "$ACADVER").String(1, version);
  w.Value<double>(10, 2.5).Value<std::int16_t>(70, -3).Value<std::int32_t>(90, 70000);
  w.String(1001, "ACAD").Value<std::int16_t>(1070, 7);
  return w;
}

TEST(TokenizerBinary, ReadsShortAndLongGroupCodesByRelease) {
  for (const bool shortCodes : {true, false}) {
    BinaryWriter w = SampleBinary(shortCodes, shortCodes ? "AC1009" : "AC1015");
    if (!shortCodes) w.Value<std::uint8_t>(290, 1);
    w.String(0, "EOF").String(1, "after the end");
    Tokenizer t(w.Bytes(), "b.dxf");
    ASSERT_TRUE(t.IsBinary());
    EXPECT_EQ(t.HasShortCodes(), shortCodes);
    std::vector<Tag> tags;
    Tag tag;
    while (t.Next(tag)) tags.push_back(tag);
    ASSERT_EQ(tags.size(), shortCodes ? 9u : 10u);
    EXPECT_EQ(tags[3].value, shortCodes ? "AC1009" : "AC1015");
    EXPECT_EQ(tags[4].Double(), 2.5);
    EXPECT_EQ(tags[5].Integer(), -3);
    EXPECT_EQ(tags[6].Integer(), 70000);
    EXPECT_EQ(tags[7].code, 1001);
    EXPECT_EQ(tags[8].code, 1070);
    EXPECT_EQ(tags[8].Integer(), 7);
    if (!shortCodes) {
      EXPECT_EQ(tags[9].code, 290);
      EXPECT_EQ(tags[9].value.size(), 1u);
      EXPECT_EQ(tags[9].Integer(), 1);
    }
    EXPECT_EQ(tags[0].line, 22u);  // byte offsets
  }
}

TEST(TokenizerBinary, FindsTheCodeWidthWithoutAVersion) {
  for (const bool shortCodes : {true, false}) {
    BinaryWriter w(shortCodes);
    w.String(0, "SECTION").String(2, "ENTITIES").String(0, "ENDSEC");
    EXPECT_EQ(Tokenizer(w.Bytes(), "b.dxf").HasShortCodes(), shortCodes);
  }
}

TEST(TokenizerBinary, TruncatedValueNamesTheOffset) {
  const BinaryWriter w = SampleBinary(false, "AC1015");
  // Cut inside the double of code 10.
  const std::string cut = w.Bytes().substr(0, w.Bytes().find("AC1015") + 7 + 2 + 3);
  try {
    Tokenize(cut);
    FAIL();
  } catch (const DxfError& e) {
    EXPECT_THAT(e.what(), HasSubstr("t.dxf, octet"));
    EXPECT_THAT(e.what(), HasSubstr("valeur du code 10"));
  }
  std::string unterminated = SampleBinary(false, "AC1015").String(1, "no end").Bytes();
  unterminated.pop_back();
  EXPECT_THROW(Tokenize(unterminated), DxfError);
}

}  // namespace
}  // namespace sheafwork::embedded
