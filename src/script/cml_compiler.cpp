#include "script/cml_compiler.h"

#include "core/name_hash.h"
#include "core/parse.h"
#include "script/cml_call_compiler.h"
#include "script/cml_vocabulary.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double kPi = 3.141592;
/// Characters; shorter values of pos, target, dir and up count as absent.
constexpr size_t kShortestVector = 5;
constexpr float kNoView = 1e-8f; ///< squared length of a target from which an up vector is derived

bool classify(cCmlElement& element, cCmlElement* parent, CmlReport& report) {
    const auto rows = cmlElements();
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const auto& r) { return r.tag == element.name; });
    if (row == rows.end()) {
        report.add(element.line, "CML file contains errors! There is no element <" + element.name + ">");
        return false;
    }
    element.elementKind = static_cast<CmlKind>(row - rows.begin());
    element.parent = parent;
    element.key = row->keyAttribute.empty() ? 0 : nameHash(element.getAttribute(row->keyAttribute));
    for (int32_t i = 0; i < element.childCount(); ++i) {
        if (!classify(*element.childAt(i), &element, report)) return false;
    }
    return true;
}

class Compiler {
public:
    Compiler(const CmlLookups& lookups, CmlReport& report) : lookups_(lookups), calls_(lookups, report) {}

    void compile(cCmlElement& e) {
        for (int32_t i = 0; i < e.childCount(); ++i) compile(*e.childAt(i));
        switch (e.elementKind) {
        case kCmlAction:
            action(e);
            break;
        case kCmlObjectElement:
            object(e);
            break;
        case kCmlReaction:
            reaction(e);
            break;
        case kCmlRequirement:
            calls_.procedures(e, e.getAttribute("do"));
            calls_.functions(e, e.getAttribute("test"));
            break;
        case kCmlDialogue:
            calls_.dialogue(e);
            break;
        case kCmlItem:
            e.item = lookups_.itemAt(lookups_.findItem(e.getAttribute("src")));
            e.skill = toInt(e.getAttribute("skill"));
            break;
        case kCmlCinematic:
            e.length = toInt(e.getAttribute("length"));
            e.slots[cCmlElement::kCameraTrack] = e.findChild(kCmlCamera);
            e.slots[cCmlElement::kHeroTrack] = e.findChild(kCmlPlayerCin);
            break;
        case kCmlFrame:
            frame(e);
            break;
        case kCmlFilter:
            e.frame = toInt(e.getAttribute("frame"));
            e.alpha = toFloat(e.getAttribute("alpha"));
            e.vectors[0] = toVector3(e.getAttribute("rgb"));
            break;
        default:
            break;
        }
    }

private:
    void action(cCmlElement& e) {
        for (size_t n = 0; n < kTriggerCount; ++n) {
            e.slots[n] = e.findChildWith(kCmlReaction, "type", std::string(cmlTriggers()[n]));
        }
        calls_.procedures(e, e.getAttribute("on_set"));
    }

    void object(cCmlElement& e) {
        action(e);
        e.fov = static_cast<float>(std::cos(toFloat(e.getAttribute("fov")) * kPi / 180));
        for (int32_t i = 0; i < e.childCount(); ++i) {
            cCmlElement& child = *e.childAt(i);
            if (child.elementKind != kCmlAction) continue;
            for (size_t n = 0; n < kTriggerCount; ++n) {
                if (!child.slots[n]) child.slots[n] = e.slots[n];
            }
        }
    }

    void reaction(cCmlElement& e) {
        calls_.procedures(e, e.getAttribute("do"));
        const std::string& type = e.getAttribute("type");
        if (type != cmlTriggers()[kTriggerDistanceExceeds] &&
            type != cmlTriggers()[kTriggerDistanceFallsBelow])
            return;
        const std::string& point = e.getAttribute("point");
        e.point = point == "player" ? kPointPlayer : point == "self" ? kPointSelf : kPointOrigin;
        e.distance = toFloat(e.getAttribute("distance"));
    }

    static void frame(cCmlElement& e) {
        e.number = toInt(e.getAttribute("number"));
        e.speed = cCmlElement::kNoSpeed;
        cVector3 &position = e.vectors[0], &target = e.vectors[1], &up = e.vectors[2];
        const auto given = [&](const char* name) { return e.getAttribute(name).size() >= kShortestVector; };
        if (given("pos")) position = toVector3(e.getAttribute("pos"));
        if (given("target")) target = toVector3(e.getAttribute("target"));
        if (given("dir")) {
            const cVector3 direction = toVector3(e.getAttribute("dir"));
            const bool ofCamera = e.parent && e.parent->elementKind == kCmlCamera;
            target = ofCamera ? position + direction : direction.normalized();
        }
        if (given("up")) {
            up = toVector3(e.getAttribute("up")).normalized();
        } else if (target.lengthSq() > kNoView) {
            const cVector3 f = (target - position).normalized();
            up = f.cross(cVector3(f.z, 0, -f.x).normalized()).normalized();
        }
        if (const std::string& speed = e.getAttribute("speed"); !speed.empty())
            e.speed = toFloat(speed) / 1000;
        if (const std::string& anim = e.getAttribute("upper_anim"); !anim.empty())
            e.upperAnim = nameHash(anim);
        if (const std::string& anim = e.getAttribute("lower_anim"); !anim.empty())
            e.lowerAnim = nameHash(anim);
    }

    const CmlLookups& lookups_;
    CmlCallCompiler calls_;
};
} // namespace

bool classifyCml(cCmlElement& root, CmlReport& report) {
    return classify(root, nullptr, report);
}

void compileCml(cCmlElement& root, const CmlLookups& lookups, CmlReport& report) {
    Compiler(lookups, report).compile(root);
}

int cCmlElement::load(const std::string& fileName, const CmlLookups& lookups, CmlReport& report) {
    clear();
    if (cXmlNode::load(fileName) != 0) {
        report.add(errorLine(), "CML file contains errors! (" + fileName + "): " + errorReason());
        return -1;
    }
    if (!classifyCml(*this, report)) return -1;
    compileCml(*this, lookups, report);
    return 0;
}
