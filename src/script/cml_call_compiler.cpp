#include "script/cml_call_compiler.h"

#include "core/name_hash.h"
#include "core/parse.h"
#include "script/cml_call_text.h"
#include "script/cml_vocabulary.h"

#include <algorithm>

namespace {
constexpr size_t kLeastArgs = 3;
constexpr int kBestSkill = 100;

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

/// Keyword, name hash, or number.
int32_t convertArgument(const std::string& text) {
    for (const CmlKeywordRow& row : cmlKeywords()) {
        if (row.word == text) return row.value;
    }
    return startsWithLetter(text) ? nameHash(text) : toInt(text);
}

cCmlElement* enclosingObject(cCmlElement& holder) {
    for (cCmlElement* e = &holder; e; e = e->parent) {
        if (e->elementKind == kCmlObjectElement) return e;
    }
    return nullptr;
}

int32_t localIndex(cCmlElement& object, const std::string& name) {
    const auto [it, isNew] =
        object.localNames.try_emplace(name, static_cast<int32_t>(object.localValues.size()));
    if (isNew) object.localValues.push_back(0);
    return it->second;
}
} // namespace

struct CmlCallCompiler::Written : CmlCallText {
    using CmlCallText::CmlCallText;

    cCmlCall call() const {
        cCmlCall c;
        c.argCount = static_cast<uint8_t>(args.size());
        c.args.assign(std::max(args.size(), kLeastArgs), 0);
        c.objectId = prefixed ? nameHash(object) : 0;
        return c;
    }
    void convertAll(cCmlCall& c) const {
        for (size_t i = 0; i < args.size(); ++i) c.args[i] = convertArgument(args[i]);
    }
};

void CmlCallCompiler::procedures(cCmlElement& holder, const std::string& list) {
    for (const std::string& piece : splitCmlList(list))
        holder.calls.push_back(compileProcedure(holder, piece));
}

void CmlCallCompiler::functions(cCmlElement& holder, const std::string& list) {
    for (const std::string& piece : splitCmlList(list))
        holder.tests.push_back(compileFunction(holder, piece));
}

void CmlCallCompiler::dialogue(cCmlElement& holder) {
    const std::string& text = holder.text;
    std::string compiled;
    size_t copied = 0;
    for (size_t tag = text.find("^9"); tag != std::string::npos; tag = text.find("^9", copied)) {
        const size_t start = tag + 2;
        const size_t end = std::min(text.find(' ', start), text.size());
        compiled.append(text, copied, start - copied).append(std::to_string(holder.calls.size()));
        holder.calls.push_back(compileProcedure(holder, text.substr(start, end - start)));
        copied = end;
    }
    holder.text = compiled.append(text, copied);
}

cCmlCall CmlCallCompiler::compileProcedure(cCmlElement& holder, const std::string& piece) {
    Written written(piece);
    cCmlCall call = written.call();
    call.procedure = findProcedure(written.name);
    if (!call.procedure) {
        report_.add(holder.line, "Unrecognised procedure \"" + written.name + "\" in CML file");
    }
    cCmlElement* object = enclosingObject(holder);
    if (!object) {
        // No object means no tables to convert by, and no self to run with.
        report_.add(holder.line,
                    "CML object " + holder.getAttribute("name") + " has actions outside objects");
        return call;
    }
    if (!convertProcedure(holder, *object, written, call)) call.procedure = nullptr;
    return call;
}

bool CmlCallCompiler::convertProcedure(const cCmlElement& holder, cCmlElement& object, Written& written,
                                       cCmlCall& call) {
    const std::string& name = written.name;
    const auto relook = [&](const std::string& form) {
        call.procedure = findProcedure(form);
        if (!call.procedure) report_.add(holder.line, "Unrecognised procedure \"" + form + "\" in CML file");
    };
    if (name == "set_action") {
        call.args[0] = childNames_.find(object, kCmlAction, written.arg(0));
    } else if (name == "run_cinematic") {
        if (object.parent && toChildIndex(*object.parent, kCmlCinematic, written, call)) return true;
        report_.add(holder.line, "CML object " + object.getAttribute("name") +
                                     " tries to run unknown cinematic \"" + written.arg(0) + "\"");
        return false;
    } else if (name == "run_dialogue") {
        if (toChildIndex(object, kCmlDialogue, written, call)) return true;
        report_.add(holder.line, "CML object " + object.getAttribute("name") +
                                     " does not include dialogue object \"" + written.arg(0) + "\"");
        return false;
    } else if (contains(name, "object") && !written.args.empty()) {
        toItemIndex(holder, written, call);
    } else if (contains(name, "_local") || contains(name, "_global")) {
        toTableVariable(contains(name, "_local"), &object, written, call, relook);
    } else if (name == "use_item") {
        toItemUse(object, written, call);
    } else if (name == "play_sound") {
        toSound(written, call);
    } else {
        written.convertAll(call);
    }
    return true;
}

cCmlCall CmlCallCompiler::compileFunction(cCmlElement& holder, const std::string& piece) {
    Written written(piece);
    cCmlCall call = written.call();
    const auto look = [&](const std::string& form) {
        call.function = findFunction(form);
        if (!call.function) report_.add(holder.line, "Unrecognised function \"" + form + "\" in CML file");
    };
    look(written.name);
    cCmlElement* object = enclosingObject(holder);
    if (!object) {
        report_.add(holder.line,
                    "CML object " + holder.getAttribute("name") + " has actions outside objects");
        call.function = nullptr; // its locals would have no table: such a test is rejected
        return call;
    }
    const std::string& name = written.name;
    if (contains(name, "local") || contains(name, "global")) {
        toTableVariable(contains(name, "local"), object, written, call, look);
    } else if (contains(name, "object")) {
        toItemIndex(holder, written, call);
    } else {
        written.convertAll(call);
    }
    return call;
}

bool CmlCallCompiler::toChildIndex(const cCmlElement& owner, CmlKind kind, const Written& written,
                                   cCmlCall& call) {
    call.args[0] = childNames_.find(owner, kind, written.arg(0));
    return call.args[0] >= 0;
}

void CmlCallCompiler::toItemIndex(const cCmlElement& holder, const Written& written, cCmlCall& call) {
    call.args[0] = lookups_.findItem(written.arg(0));
    if (call.args[0] < 0) {
        call.args[0] = 0;
        report_.add(holder.line,
                    "CML object " + holder.name + " specified unexisting object \"" + written.arg(0) + "\"");
    }
    for (size_t i = 1; i < written.args.size(); ++i) call.args[i] = toInt(written.args[i]);
}

void CmlCallCompiler::toItemUse(const cCmlElement& object, const Written& written, cCmlCall& call) {
    call.args[1] = childNames_.find(object, kCmlItem, written.arg(0));
    // The item may be compiled after this call: its attribute is read, not its field.
    const cCmlElement* item = object.childAt(call.args[1]);
    call.args[0] = item ? std::min(toInt(item->getAttribute("skill")), kBestSkill) : 0;
    call.args[2] = convertArgument(written.arg(1));
}

void CmlCallCompiler::toSound(const Written& written, cCmlCall& call) {
    lookups_.preloadSound(written.arg(0));
    call.args[0] = nameHash(written.arg(0));
    if (written.args.size() > 1) call.args[1] = toInt(written.args[1]);
}

template <typename IndexOf, typename Relook>
void CmlCallCompiler::toVariable(const Written& written, cCmlCall& call, const IndexOf& indexOf,
                                 const Relook& relook) {
    if (written.args.empty()) return;
    call.args[0] = indexOf(written.args[0]);
    if (written.args.size() < 2) return;
    const std::string& second = written.args[1];
    if (startsLikeNumber(second)) {
        call.args[1] = toInt(second);
    } else if (second == "param") {
        relook(written.name + "_p");
    } else {
        call.args[1] = indexOf(second);
        relook(written.name + "_r");
    }
}

template <typename Relook>
void CmlCallCompiler::toTableVariable(bool local, cCmlElement* object, const Written& written, cCmlCall& call,
                                      const Relook& relook) {
    if (local) {
        toVariable(
            written, call, [&](const std::string& n) { return localIndex(*object, n); }, relook);
    } else {
        toVariable(written, call, lookups_.globalIndex, relook);
    }
}
