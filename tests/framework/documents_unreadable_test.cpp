// Texts that are no documents: what is said about each, and that nothing worse happens.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "framework/documents/documents.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

// That many attributes, named by numbers.
std::string attributes(const std::string& name, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += fmt::format(" {}{}='x'", name, i);
  return text;
}

struct BadText {
  const char* name;
  std::string text;
  const char* said;
};

void PrintTo(const BadText& bad, std::ostream* out) {
  *out << bad.name;
}

class Unread : public testing::TestWithParam<BadText> {};

TEST_P(Unread, SaysWhereAndWhy) {
  const BadText& bad = GetParam();
  EXPECT_EQ(edit_outcome(compact_models(), bad.text), fmt::format("unreadable: request: {}\n", bad.said));
}

std::string named(const testing::TestParamInfo<BadText>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Xml, Unread,
    testing::Values(
        BadText{"Empty", "", "the document is empty"}, BadText{"Blank", " \n\t\r\n", "the document is empty"},
        BadText{"NoXml", "hello", "line 1: Start tag expected, '<' not found"},
        BadText{"Binary",
                std::string("\x7f"
                            "ELF\x02\x01\x00\x00\x03",
                            9),
                "line 1: a NUL character stands in the document"},
        BadText{"NulReference", "<a>\n&#0;</a>", "line 2: xmlParseCharRef: invalid xmlChar value 0"},
        BadText{"Utf16", std::string("\xff\xfe<\0a\0/\0>\0", 10), "line 1: a NUL character stands in the document"},
        BadText{"Utf7", "<?xml version='1.0' encoding='UTF-7'?><a/>",
                "line 1: the encoding is UTF-7; UTF-8 is accepted"},
        BadText{"Ebcdic",
                "\x4c\x6f\xa7\x94\x93\x40\xa5\x85\x99\xa2\x89\x96\x95\x7e\x7d\xf1\x4b\xf0\x7d\x6f\x6e\x4c\x81\x61\x6e",
                "line 1: the encoding is EBCDIC-US; UTF-8 is accepted"},
        BadText{"ManyAttributes", "<a>\n<b" + attributes("x", 257) + "/></a>",
                "line 2: an element has more than 256 attributes"},
        BadText{"ManyDeclarations", "<a" + attributes("xmlns:x", 257) + "/>",
                "line 1: an element has more than 256 attributes"},
        BadText{"ManyScopes", "<a" + attributes("xmlns:x", 200) + ">\n<b" + attributes("xmlns:y", 57) + "/></a>",
                "line 2: more than 256 namespaces are declared"},
        BadText{"ControlCharacter", "<a>\x01</a>", "line 1: PCDATA invalid Char value 1"},
        BadText{"NotUtf8", "<a>\n\xff</a>", "line 2: Input is not proper UTF-8, indicate encoding !"},
        BadText{"Truncated", "<interfaces>\n<interface>", "line 2: Premature end of data in tag interface line 2"},
        BadText{"TruncatedInATag", "<interfaces", "line 1: Couldn't find end of Start Tag interfaces line 1"},
        BadText{"WrongEndTag", "<a>\n<b></a>", "line 2: Opening and ending tag mismatch: b line 2 and a"},
        BadText{"TwoRoots", "<a/>\n<b/>", "line 2: Extra content at the end of the document"},
        BadText{"AttributeTwice", "<a b='1' b='2'/>", "line 1: Attribute b redefined"},
        BadText{"UnboundPrefix", "<p:a/>", "line 1: Namespace prefix p on a is not defined"},
        BadText{"UnboundPrefixOfAnAttribute", "<a nc:operation='merge'/>",
                "line 1: Namespace prefix nc for operation on a is not defined"},
        BadText{"Doctype", "<!DOCTYPE a><a/>", "line 1: a DOCTYPE is not accepted"},
        BadText{"Entity", "<!DOCTYPE a [<!ENTITY x 'y'>]>\n<a>&x;</a>", "line 1: a DOCTYPE is not accepted"},
        BadText{"ExternalEntity", "<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]>\n<a>&x;</a>",
                "line 1: a DOCTYPE is not accepted"},
        BadText{"EntitiesOfEntities",
                "<!DOCTYPE a [<!ENTITY b 'xxxxxxxxxx'><!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;'>"
                "<!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;'>]><a>&d;</a>",
                "line 1: a DOCTYPE is not accepted"},
        BadText{"UndeclaredEntity", "<a>&x;</a>", "line 1: Entity 'x' not defined"},
        BadText{"TextBeforeElements", "<a>x<b/></a>", "line 1: text stands beside elements in 'a'"},
        BadText{"TextAfterElements", "<a><b/>\nx</a>", "line 2: text stands beside elements in 'a'"},
        BadText{"TooDeep", repeated("<a>", 201) + repeated("</a>", 201),
                "line 1: elements are nested more than 200 deep"},
        BadText{"MuchTooDeep", repeated("<a>", 100000), "line 1: elements are nested more than 200 deep"},
        BadText{"HugeAttribute", "<a b='" + repeated("x", 70000) + "'/>",
                "line 1: attribute 'b' of 'a' is longer than 65536 bytes"},
        BadText{"EnormousAttribute", "<a b='" + repeated("x", 11000000) + "'/>", "line 1: AttValue length too long"},
        BadText{"HugeText", "<a>" + repeated("x", 1048577) + "</a>", "line 1: a text is longer than 1048576 bytes"}),
    named);

INSTANTIATE_TEST_SUITE_P(
    Json, Unread,
    testing::Values(
        BadText{"Array", "[1]", "line 1: a JSON document starts with '{'"},
        BadText{"Truncated", "{\"a\": {\n\"b\": 1", "line 2: the document ends too early"},
        BadText{"TruncatedInAText", "{\"a\": \"b", "line 1: the document ends too early"},
        BadText{"TruncatedInAnEscape", "{\"a\": \"\\", "line 1: the document ends too early"},
        BadText{"TruncatedBeforeAValue", "{\"a\":", "line 1: the document ends too early"},
        BadText{"NoColon", "{\"a\" 1}", "line 1: ':' is expected here"},
        BadText{"NoComma", "{\"a\": 1 \"b\": 2}", "line 1: '}' is expected here"},
        BadText{"CommaAtTheEnd", "{\"a\": [1,]}", "line 1: a value is expected here, not ']'"},
        BadText{"NameWithoutQuotes", "{a: 1}", "line 1: '\"' is expected here"},
        BadText{"Word", "{\"a\": yes}", "line 1: a value is expected here, not 'yes'"},
        BadText{"LeadingZero", "{\"a\": 01}", "line 1: a value is expected here, not '01'"},
        BadText{"Hexadecimal", "{\"a\": 0x10}", "line 1: a value is expected here, not '0x10'"},
        BadText{"PlusSign", "{\"a\": +1}", "line 1: a value is expected here, not '+1'"},
        BadText{"BarePoint", "{\"a\": 1.}", "line 1: a value is expected here, not '1.'"},
        BadText{"BareExponent", "{\"a\": 1e}", "line 1: a value is expected here, not '1e'"},
        BadText{"Comment", "{/* */}", "line 1: '\"' is expected here"},
        BadText{"SomethingAfter", "{}\n{}", "line 2: something follows the end of the document"},
        BadText{"NulAfter", std::string("{}\0", 3), "line 1: something follows the end of the document"},
        BadText{"UnknownEscape", "{\"a\": \"\\x\"}", "line 1: unknown escape in a text"},
        BadText{"ShortEscape", "{\"a\": \"\\u12\"}", "line 1: \\u needs four hexadecimal digits"},
        BadText{"HalfAPair", "{\"a\": \"\\ud800\"}", "line 1: a text holds a character that is not allowed"},
        BadText{"WrongPair", "{\"a\": \"\\ud800\\u0041\"}", "line 1: half a surrogate pair in a text"},
        BadText{"NulInAText", "{\"a\": \"\\u0000\"}", "line 1: a text holds a character that is not allowed"},
        BadText{"LineInAText", "{\"a\": \"\n\"}", "line 1: a text holds a control character"},
        BadText{"NotUtf8", "{\"a\": \"\xff\"}", "line 1: a text is not UTF-8"},
        BadText{"OverlongUtf8", "{\"a\": \"\xc0\xaf\"}", "line 1: a text is not UTF-8"},
        BadText{"SurrogateUtf8", "{\"a\": \"\xed\xa0\x80\"}", "line 1: a text is not UTF-8"},
        BadText{"CutUtf8", "{\"a\": \"\xe2\x82\"}", "line 1: a text is not UTF-8"},
        BadText{"ArrayInAnArray", "{\"a\": [[1]]}", "line 1: 'a' holds an array in an array"},
        BadText{"TooDeep", repeated("{\"a\":", 201) + "1" + repeated("}", 201),
                "line 1: values are nested more than 200 deep"},
        BadText{"MuchTooDeep", repeated("{\"a\":[", 100000), "line 1: values are nested more than 200 deep"},
        BadText{"HugeText", "{\"a\": \"" + repeated("x", 1048577) + "\"}",
                "line 1: a text is longer than 1048576 bytes"},
        BadText{"AnnotationOfAnArray", "{\"a\": [1], \"@a\": {\"m:b\": 1}}",
                "line 1: '@a' is about an array and has to be one"},
        BadText{"AnnotationTooLong", "{\"a\": [1],\n\"@a\": [null, {\"m:b\": 1}]}",
                "line 2: '@a' has more entries than 'a'"},
        BadText{"AnnotationTwice", "{\"a\": [{\"@\": {\"m:b\": 1}}], \"@a\": [{\"m:b\": 2}]}",
                "line 1: 'a' is annotated twice"},
        BadText{"AnnotationInAnObjectTwice", "{\"a\": {\"@\": {\"m:b\": 1}, \"@\": {\"m:b\": 2}}}",
                "line 1: 'a' is annotated twice"},
        BadText{"AnnotationNotAnObject", "{\"@a\": [1]}", "line 1: an annotation is an object or null"},
        BadText{"AnnotationTooLarge", "{\"a\": 1, \"@a\": {\"m:b\": 1" + repeated(", \"m:b\": 1", 256) + "}}",
                "line 1: an annotation has more than 256 members"},
        BadText{"AnnotationTooRich", "{\"@\": {\"m:b\": {}}}", "line 1: the annotation 'b' holds more than a value"}),
    named);

// Wherever it stands: nothing after it, and nothing beside it, is dropped without a word.
TEST(Nul, IsRefusedEverywhere) {
  const std::string xml = "<?xml version='1.0'?>\n<!-- c --><?p i?><a b='c'><![CDATA[d]]>\ne&amp;f</a>\n";
  const std::string json = "{\"a\": [1, \"b\\u0041\", null, true], \n\"@c\": {\"m:d\": 2.5}}\n";
  for (const std::string& whole : {xml, json}) {
    const Format format = format_of(whole);
    for (std::size_t at = 0; at <= whole.size(); ++at) {
      std::string text = whole;
      text.insert(at, 1, '\0');
      const auto outcome = [&](std::string_view document) {
        return outcome_of([&] {
          parse_edit(compact_models().get(), {document, format, "request"}, Operation::merge);
          return std::string("read\n");
        });
      };
      const auto line = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1;
      EXPECT_EQ(outcome(text).rfind(fmt::format("unreadable: request: line {}: ", line), 0), 0U)
          << outcome(text) << "at " << at << " of\n"
          << whole;
    }
  }
}

// What is no limit for a text is none for the time that it takes: hundreds of thousands took libxml2 half a minute.
TEST(Attributes, AreCountedBeforeTheyAreRead) {
  const auto start = std::chrono::steady_clock::now();
  for (const char* const name : {"x", "xmlns:x"}) {
    EXPECT_EQ(edit_outcome(compact_models(), "<a" + attributes(name, 200'000) + "/>"),
              "unreadable: request: line 1: an element has more than 256 attributes\n");
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

// What looks like a tag and is none, and quotes of both kinds.
TEST(Attributes, AreNotMistaken) {
  const std::string many = attributes("x", 300);
  const auto said = [](const std::string& text) { return edit_outcome(compact_models(), text); };
  const std::string plain = said("<a xmlns='urn:x'/>");
  EXPECT_NE(plain.find("refused: unknown-namespace"), std::string::npos) << plain;
  for (const std::string& text :
       {"<!-- <b" + many + "> --><a xmlns='urn:x'/>", "<?p <b" + many + "?><a xmlns='urn:x'/>",
        "<a xmlns='urn:x'><![CDATA[<b" + many + ">]]></a>", "<a xmlns='urn:x'>" + many + "</a>",
        "<a xmlns='urn:x' b=\"" + many + "\"/>", "<a xmlns='urn:x'/>\n<!-- " + many + " -->"}) {
    EXPECT_EQ(said(text), plain) << text.substr(0, 40);
  }
  // After each of them tags count again.
  for (const char* const before :
       {"<!-- ' -->", "<?p \" ?>", "<a b='>\"'>", "<a b=\">'\">", "<a>'", "<a><![CDATA[\"]]>"}) {
    EXPECT_EQ(said(before + ("<b" + many + "/>")),
              "unreadable: request: line 1: an element has more than 256 attributes\n")
        << before;
  }
}

TEST(Attributes, OfAnHonestDocumentAreTaken) {
  const std::string scopes = attributes("xmlns:x", 255);
  EXPECT_NE(edit_outcome(compact_models(), "<a xmlns='urn:y'" + scopes + "><b/><b" + attributes("c", 256) + "/></a>")
                .find("refused: unknown-namespace"),
            std::string::npos);
  std::string encoded = "<?xml version='1.0' encoding='iso-8859-1'?><a xmlns='urn:\xfc'/>";
  EXPECT_NE(edit_outcome(compact_models(), encoded).find("urn:ü"), std::string::npos);
}

TEST(UnreadObjects, HaveAThousandMembersAtMost) {
  std::string members;
  for (int i = 0; i < 1000; ++i) members += fmt::format("{}\"a{}\": 1", i == 0 ? "" : ",", i);
  EXPECT_THROW(parse_edit(compact_models().get(), {"{" + members + "}", Format::json, "request"}, Operation::merge),
               Refused);
  EXPECT_EQ(edit_outcome(compact_models(), "{" + members + ",\"b\": 1}"),
            "unreadable: request: line 1: an object has more than 1000 members\n");
}

}  // namespace
}  // namespace yfw::test
