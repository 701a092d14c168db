#include "gallery/call_recorder.h"

#include "script/cml_call_text.h"
#include "script/cml_vocabulary.h"

namespace {
CallRecorder* g_recorder = nullptr;

template <typename Rows, typename Handler> std::string rowOf(const Rows& rows, Handler handler) {
    for (const auto& row : rows) {
        if (row.handler == handler) return std::string(row.name);
    }
    return {};
}
} // namespace

CallRecorder::CallRecorder() {
    g_recorder = this;
}
CallRecorder::~CallRecorder() {
    g_recorder = nullptr;
}

void CallRecorder::attach(cCmlElement& root) {
    if (!root.parent) calls_.clear();
    const bool isSet = root.elementKind == kCmlAction || root.elementKind == kCmlObjectElement;
    take(root, root.calls, isSet ? "on_set" : "do");
    take(root, root.tests, "test");
    for (int32_t i = 0; i < root.childCount(); ++i) attach(*root.childAt(i));
}

void CallRecorder::take(cCmlElement& holder, std::vector<cCmlCall>& calls, const char* attribute) {
    const std::vector<std::string> pieces = splitCmlList(holder.getAttribute(attribute));
    for (size_t i = 0; i < calls.size(); ++i) {
        cCmlCall& call = calls[i];
        Call& taken = calls_[call.args.data()];
        taken = {call.procedure, call.function, &holder, {}};
        if (i < pieces.size()) taken.arguments = CmlCallText(pieces[i]).args; // a conversation's are gone
        if (call.procedure) call.procedure = &runProcedure;
        if (call.function) call.function = &runTest;
    }
}

void CallRecorder::noteWords(const std::string& row, const Call& call) {
    for (const std::string& argument : call.arguments) {
        bool keyword = false;
        for (const CmlKeywordRow& word : cmlKeywords()) keyword = keyword || word.word == argument;
        if (keyword || startsWithLetter(argument)) words[row].insert(keyword ? argument : "name");
    }
    for (const cCmlElement* e = call.holder; e; e = e->parent) {
        if (e->elementKind == kCmlReaction) triggers.insert(e->getAttribute("type"));
    }
}

void CallRecorder::runProcedure(cCmlObject& self, int argCount, const int32_t* args) {
    const Call& call = g_recorder->calls_.at(args);
    const std::string row = rowOf(cmlProcedures(), call.procedure);
    g_recorder->procedures.insert(row);
    g_recorder->noteWords(row, call);
    call.procedure(self, argCount, args);
}

bool CallRecorder::runTest(cCmlObject& self, int argCount, const int32_t* args) {
    const Call& call = g_recorder->calls_.at(args);
    const std::string row = rowOf(cmlFunctions(), call.function);
    const bool result = call.function(self, argCount, args);
    g_recorder->tests[row].insert(result);
    g_recorder->noteWords(row, call);
    return result;
}
