#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Element tree of the game's small XML dialect: elements, attributes (quoted, bare, or a name alone that
/// means TRUE), text, comments inside content. No prologs, entities or CDATA.
class cXmlNode {
public:
    enum Kind : int32_t { kPlain = 0, kCml = 1 };

    explicit cXmlNode(Kind nodeKind = kPlain) : kind(nodeKind) {}
    virtual ~cXmlNode();
    cXmlNode(const cXmlNode&) = delete;
    cXmlNode& operator=(const cXmlNode&) = delete;

    /// Parses a file into this (empty) node. 0, or −1 when it cannot be read or is malformed; the tree then
    /// holds what was read so far and errorLine() the line where reading ended.
    int load(const std::string& fileName);
    int parse(const uint8_t* bytes, size_t size);
    /// Value text, empty when absent. The reference lives as long as the node.
    const std::string& getAttribute(std::string_view attribute) const;
    bool hasAttribute(std::string_view attribute) const { return findAttribute(attribute) != nullptr; }
    int errorLine() const { return errorLine_; } ///< 0 without an error
    /// Why the file was refused, empty without an error.
    const std::string& errorReason() const { return errorReason_; }
    /// Line of the file on which the character at this position of the text, as it was read, stands.
    int textLine(size_t position) const;
    /// Positions in the text, as it was read, before which it went on to another line.
    std::vector<size_t> textBreaks() const;

    const Kind kind;
    bool hasChildren = false;
    int line = 0; ///< of the element's "<", counted from 1
    std::string name;
    std::string text; ///< all segments joined, without tabs and line breaks
    std::vector<std::pair<std::string, std::string>> attributes; ///< name and value; each name once
    std::vector<std::unique_ptr<cXmlNode>> children;

protected:
    /// A new node of this node's kind.
    virtual std::unique_ptr<cXmlNode> makeChild() const;

private:
    friend class cXmlParser;
    const std::string* findAttribute(std::string_view attribute) const; ///< null when absent
    void setAttribute(std::string_view attribute, std::string_view value);
    struct TextLine {
        uint32_t position;
        int line;
    };
    std::vector<TextLine> textLines_; ///< where the text goes on to another line; the element's own at first
    int errorLine_ = 0;
    std::string errorReason_;
};
