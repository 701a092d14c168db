#include "data/xml_node.h"

#include "support/temp_game.h"

#include <gtest/gtest.h>
#include <map>

namespace {
int parse(cXmlNode& node, const std::string& text) {
    return node.parse(reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

/// name{attribute=value,}[text](child child )
std::string describe(const cXmlNode& node, bool whole) {
    std::string out = node.name;
    if (!node.attributes.empty()) {
        out += '{';
        for (const auto& [name, value] : std::map(node.attributes.begin(), node.attributes.end()))
            out += name + '=' + value + ',';
        out += '}';
    }
    if (!node.text.empty()) out += '[' + node.text + ']';
    EXPECT_TRUE(node.hasChildren == !node.children.empty() || !whole) << node.name;
    if (node.children.empty()) return out;
    out += '(';
    for (const auto& child : node.children) out += describe(*child, whole) + ' ';
    return out + ')';
}

std::string parsed(const std::string& text) {
    cXmlNode node;
    const int result = parse(node, text);
    EXPECT_EQ(node.errorLine() == 0, result == 0) << text;
    return (result == 0 ? "" : "fails: ") + describe(node, result == 0);
}

} // namespace

TEST(Xml, TheGrammar) {
    const struct {
        const char *text, *expected;
    } rows[] = {
        // attributes
        {"<a x=1 y=\"two words\" flag/>", "a{flag=TRUE,x=1,y=two words,}"},
        {"<a x=0 x=\"1/2>3\" y=\"a=b\" z=\"\" 1=2/>", "a{1=2,x=1/2>3,y=a=b,z=,}"},
        {"<a x=\"1\"y=\"2\"/>", "a{x=1,}"},
        {"<a x=file/part.cpm></a>", "a{x=file,}"}, // the slash closes the element
        {"<a _x=1 =y/>", "a{x=1,y=TRUE,}"},
        {"<a x\"= \"y=1/>", "a{x\"= \"y=1,}"}, // a quote starts a run in the name too
        {"<a x=&lt;>&amp;</a>", "a{x=&lt;,}[&amp;]"},
        // line breaks are no separators inside a tag
        {"<a x=\"1\"\ny=\"2\"></a>", "a{x=1,}"},
        {"<a\n x=1\ny=2></a>", "a\n{x=1\ny=2,}"},
        {"<a \n x=1 \r\n y=2 \t/>", "a{x=1,y=2,}"},
        // names and ends
        {"text before<a/>behind<b", "a"},
        {"<></>", ""},
        {"< a/>", "{a=TRUE,}"},
        {"<a></b>", "a"},
        {"<a></ whatever it says >", "a"},
        {"<a / ignored=1 >", "a"},
        // content
        {"<a>two\r\n\tlines <b/> of text</a>", "a[twolines  of text](b )"},
        {"<a>x>y</a>", "a[x>]"},
        {"<a><b>1</b>2<c/>3</a>", "a[23](b[1] c )"},
        // comments
        {"<a><!-- <b> > -> -- > --></a>", "a"},
        {"<a><!-- x ---> y --></a>", "a"},
        {"<a><!-- x ---->y</a>", "a[y]"},
        {"<a><!DOCTYPE b> c -->d</a>", "a[d]"},
        {"<a>x<!----><b/></a>", "a[x](b )"},
        // failures keep what was read
        {"", "fails: "},
        {"<", "fails: "},
        {"<a x=1", "fails: a"},
        {"<a>text<b>1</b>", "fails: a[text](b[1] )"},
        {"<a><!-- ", "fails: a"},
        {"<a></a", "fails: a"},
    };
    for (const auto& row : rows) EXPECT_EQ(parsed(row.text), row.expected) << row.text;
}

TEST(Xml, TokensHoldAtMost255Characters) {
    const std::string name(255, 'n'), value(253, 'v');
    EXPECT_EQ(parsed("<" + name + " x=" + value + "/>"), name + "{x=" + value + ",}");
    for (const std::string& tooLong : {"<" + name + "n/>", "<a x=" + value + "v/>"}) {
        cXmlNode node;
        EXPECT_EQ(parse(node, tooLong), -1);
    }
}

TEST(Xml, DeepNestingFailsInsteadOfOverflowing) {
    for (const auto& [levels, result] : {std::pair{250, 0}, {1000000, -1}}) {
        std::string text;
        for (int i = 0; i < levels; ++i) text += "<a>";
        for (int i = 0; i < levels; ++i) text += "</a>";
        cXmlNode node;
        EXPECT_EQ(parse(node, text), result);
    }
}

TEST(Xml, ManyAttributesFailInsteadOfTakingForEver) {
    for (const auto& [count, result] : {std::pair{256, 0}, {257, -1}}) {
        std::string text = "<a";
        for (int i = 0; i < count; ++i) text += " n" + std::to_string(i) + "=\"" + std::to_string(i) + "\"";
        cXmlNode node;
        EXPECT_EQ(parse(node, text + " n7=\"x\"/>"), result) << count;
        EXPECT_TRUE(result != 0 || node.getAttribute("n7") == "x") << "the last value stands";
    }
}

TEST(Xml, LinesAreCountedForMessages) {
    cXmlNode node;
    ASSERT_EQ(parse(node, "\n<a>\n<b x=\"\n\"/>\n<!--\n--><c/></a>"), 0);
    EXPECT_EQ(node.line, 2);
    EXPECT_EQ(node.children[0]->line, 3);
    EXPECT_EQ(node.children[1]->line, 6);
    EXPECT_EQ(node.errorLine(), 0);
    cXmlNode broken;
    EXPECT_EQ(parse(broken, "<a>\n<b>\n\n"), -1);
    EXPECT_EQ(broken.errorLine(), 4);
    EXPECT_EQ(broken.errorReason(), "the file ends before its first element does");
    cXmlNode absent;
    EXPECT_EQ(absent.load("absent.xml"), -1);
    EXPECT_EQ(absent.errorReason(), "it cannot be read");
}

TEST(Xml, FilesAreFoundUnderAnyCase) {
    TempGame game;
    game.write("data/Level.XML", "<level/>");
    cXmlNode node, none;
    EXPECT_EQ(node.load("DATA\\level.xml"), 0);
    EXPECT_EQ(node.name, "level");
    EXPECT_EQ(node.getAttribute("absent"), "");
    EXPECT_EQ(none.load("data\\none.xml"), -1);
    EXPECT_TRUE(TempGame::errors().empty()) << "callers report in their own words";
}
