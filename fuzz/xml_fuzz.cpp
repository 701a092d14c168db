#include "data/xml_node.h"
#include "support.h"

namespace {
int count(const cXmlNode& node, fuzz::cDigest& digest) {
    digest.add(node.name).add(node.text).addValue(node.line);
    for (const auto& [name, value] : node.attributes) digest.add(name).add(value);
    int sum = 1;
    for (const auto& child : node.children) sum += count(*child, digest);
    return sum;
}
} // namespace

FUZZ_TARGET(xml) {
    fuzz::putFile("in.xml", fuzz::text(data, size));
    cXmlNode root;
    const int result = root.load("in.xml");
    fuzz::require((result == 0) == (root.errorLine() == 0), "a failure has a line, a success none");
    fuzz::cDigest digest;
    fuzz::require(count(root, digest) <= static_cast<int>(size) + 1, "an element takes a character at least");
    return result == 0 ? digest.value() : 0;
}
