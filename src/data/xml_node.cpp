#include "data/xml_node.h"

#include "platform/files.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {
constexpr size_t kMostAttributes = 256; ///< of an element: each is compared with those before it
constexpr int kDeepest = 256;           ///< nesting that the recursive parser accepts
constexpr size_t kLongestToken = 255;   ///< element name, or one attribute with its value
constexpr size_t kUsualAttributes = 4;
constexpr int kEnd = -1;
} // namespace

class cXmlParser {
public:
    cXmlParser(const uint8_t* bytes, size_t size) : at_(bytes), end_(bytes + size) {}

    int document(cXmlNode& root) {
        for (int c = get(); c != '<'; c = get()) {
            if (c == kEnd) return fail();
        }
        const int result = element(root, 0);
        return refused_ ? -1 : result;
    }
    int line() const { return line_; }
    const char* reason() const { return reason_; }

private:
    int get() {
        if (at_ == end_) return kEnd;
        const int c = *at_++;
        if (c == '\n') ++line_;
        return c;
    }
    int peek() const { return at_ == end_ ? kEnd : *at_; }
    int fail() const { return -1; }
    /// A breach of a limit fails the whole document: going on would read the rest at the wrong level.
    int refuse(const char* reason) {
        reason_ = reason;
        refused_ = true;
        at_ = end_;
        return -1;
    }

    /// Up to a blank, ">" or "/" outside of quotes; lies in the document. False when the token reaches the
    /// end of the file.
    bool token(std::string_view& out) {
        const uint8_t* const start = at_;
        bool quoted = false;
        for (; at_ != end_; ++at_) {
            const int c = *at_;
            if (!quoted && (c == ' ' || c == '\t' || c == '>' || c == '/')) break;
            if (c == '"') quoted = !quoted;
            if (c == '\n') ++line_;
        }
        out = span(start, at_);
        if (at_ == end_) return false;
        if (out.size() <= kLongestToken) return true;
        refuse("a name, or an attribute with its value, is longer than 255 characters");
        return false;
    }

    static std::string_view span(const uint8_t* first, const uint8_t* end) {
        return {reinterpret_cast<const char*>(first), static_cast<size_t>(end - first)};
    }

    static void attribute(cXmlNode& node, std::string_view token) {
        const size_t equals = token.find('=');
        if (equals == std::string_view::npos || equals == 0) {
            node.setAttribute(token, "TRUE");
            return;
        }
        std::string_view value = token.substr(equals + 1);
        if (!value.empty() && value[0] == '"') {
            value.remove_prefix(1);
            value = value.substr(0, value.find('"'));
        }
        node.setAttribute(token.substr(0, equals), value);
    }

    /// After "<": the name, the attributes and the tag's ">". 0, or −1 on a broken tag.
    int tag(cXmlNode& node) {
        std::string_view text;
        node.hasChildren = true;
        const bool whole = token(text);
        node.name = text;
        if (!whole) return fail();
        for (;;) {
            const int c = peek();
            if (c == kEnd) return fail();
            if (std::isalnum(c)) {
                if (!token(text)) return fail();
                attribute(node, text);
                if (node.attributes.size() > kMostAttributes)
                    return refuse("an element has more than 256 attributes");
                continue;
            }
            get();
            if (c == '>') return 0;
            if (c != '/') continue;
            node.hasChildren = false;
            return skipTo('>') ? 0 : fail();
        }
    }

    bool skipTo(int wanted) {
        for (int c = get(); c != kEnd; c = get()) {
            if (c == wanted) return true;
        }
        return false;
    }

    /// After "<!": up to exactly two dashes and ">"; a third dash starts the count again.
    void comment() {
        int dashes = 0;
        for (int c = get(); c != kEnd; c = get()) {
            if (c == '>' && dashes == 2) return;
            dashes = c != '-' ? 0 : dashes == 2 ? 1 : dashes + 1;
        }
    }

    int element(cXmlNode& node, int depth) {
        node.line = line_;
        if (depth > kDeepest) return refuse("elements lie more than 256 deep in each other");
        if (tag(node) != 0) return -1;
        if (!node.hasChildren) return 0;
        const int result = content(node, depth);
        node.hasChildren = !node.children.empty();
        return result;
    }

    static bool isPlainText(uint8_t c) { return c != '<' && c != '>' && c != '\t' && c != '\r' && c != '\n'; }

    /// Before text is added: notes where it goes on to another line.
    void markLine(cXmlNode& node) const {
        auto& lines = node.textLines_;
        if (line_ != (lines.empty() ? node.line : lines.back().line))
            lines.push_back({static_cast<uint32_t>(node.text.size()), line_});
    }

    int content(cXmlNode& node, int depth) {
        for (;;) {
            const int c = get();
            if (c == kEnd) return fail();
            if (c == '\t' || c == '\r' || c == '\n') continue;
            if (c == '>') {
                markLine(node);
                node.text += '>';
                return 0;
            }
            if (c != '<') {
                const uint8_t* const start = at_ - 1;
                while (at_ != end_ && isPlainText(*at_)) ++at_;
                markLine(node);
                node.text += span(start, at_);
                continue;
            }
            const int next = peek();
            if (next == kEnd) return fail();
            if (next == '/') return skipTo('>') ? 0 : fail();
            if (next == '!') {
                get();
                comment();
                continue;
            }
            node.children.push_back(node.makeChild());
            element(*node.children.back(), depth + 1);
        }
    }

    const uint8_t* at_;
    const uint8_t* end_;
    int line_ = 1;
    bool refused_ = false;
    const char* reason_ = "the file ends before its first element does";
};

cXmlNode::~cXmlNode() = default;

std::unique_ptr<cXmlNode> cXmlNode::makeChild() const {
    return std::make_unique<cXmlNode>();
}

int cXmlNode::load(const std::string& fileName) {
    platform::Bytes bytes;
    if (!platform::readFile(fileName, bytes)) {
        errorReason_ = "it cannot be read";
        return -1;
    }
    return parse(bytes.data(), bytes.size());
}

int cXmlNode::parse(const uint8_t* bytes, size_t size) {
    textLines_.clear();
    cXmlParser parser(bytes, size);
    const int result = parser.document(*this);
    errorLine_ = result == 0 ? 0 : parser.line();
    errorReason_ = result == 0 ? "" : parser.reason();
    return result;
}

const std::string* cXmlNode::findAttribute(std::string_view attribute) const {
    for (const auto& [key, value] : attributes) {
        if (key == attribute) return &value;
    }
    return nullptr;
}

const std::string& cXmlNode::getAttribute(std::string_view attribute) const {
    static const std::string kAbsent;
    const std::string* const value = findAttribute(attribute);
    return value ? *value : kAbsent;
}

/// The last value given stands.
void cXmlNode::setAttribute(std::string_view attribute, std::string_view value) {
    for (auto& [key, old] : attributes) {
        if (key != attribute) continue;
        old = value;
        return;
    }
    if (attributes.empty()) attributes.reserve(kUsualAttributes);
    attributes.emplace_back(attribute, value);
}

int cXmlNode::textLine(size_t position) const {
    const auto next = std::upper_bound(textLines_.begin(), textLines_.end(), position,
                                       [](size_t p, const TextLine& start) { return p < start.position; });
    return next == textLines_.begin() ? line : std::prev(next)->line;
}

std::vector<size_t> cXmlNode::textBreaks() const {
    std::vector<size_t> breaks;
    for (const TextLine& start : textLines_) {
        if (start.position > 0) breaks.push_back(start.position);
    }
    return breaks;
}
