#pragma once
#include "script/cml_element.h"

#include <map>
#include <set>
#include <string>

/// Stands before every call of a compiled document and notes what ran, until the next document. One at a
/// time.
class CallRecorder {
public:
    CallRecorder();
    ~CallRecorder();
    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

    /// Forgets the document before; what was noted stays.
    void attach(cCmlElement& root);

    std::set<std::string> procedures;                   ///< names of rows
    std::map<std::string, std::set<bool>> tests;        ///< and what they returned
    std::set<std::string> triggers;                     ///< of reactions whose calls ran
    std::map<std::string, std::set<std::string>> words; ///< a call's keywords; "name" for any other word

private:
    struct Call {
        CmlProcedure procedure;
        CmlFunction function;
        const cCmlElement* holder;
        std::vector<std::string> arguments; ///< as written
    };
    void take(cCmlElement& holder, std::vector<cCmlCall>& calls, const char* attribute);
    void noteWords(const std::string& row, const Call& call);
    static void runProcedure(cCmlObject& self, int argCount, const int32_t* args);
    static bool runTest(cCmlObject& self, int argCount, const int32_t* args);

    std::map<const int32_t*, Call> calls_; ///< by the array that their handler is given
};
