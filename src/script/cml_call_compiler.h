#pragma once
#include "script/cml_element.h"

/// Compiles call lists: "name(arg,arg);object.name(arg)". Nothing is trimmed, so arguments are written
/// without blanks. Bad calls are reported and kept without a handler, or dropped when their arguments name
/// nothing.
class CmlCallCompiler {
public:
    CmlCallCompiler(const CmlLookups& lookups, CmlReport& report) : lookups_(lookups), report_(report) {}

    void procedures(cCmlElement& holder, const std::string& list);
    void functions(cCmlElement& holder, const std::string& list);
    /// Compiles the ^9 calls of a talking script and replaces each by its index.
    void dialogue(cCmlElement& holder);

private:
    struct Written; ///< one call as text
    cCmlCall compileProcedure(cCmlElement& holder, const std::string& piece);
    cCmlCall compileFunction(cCmlElement& holder, const std::string& piece);
    /// False when the call is to be dropped.
    bool convertProcedure(const cCmlElement& holder, cCmlElement& object, Written& written, cCmlCall& call);
    bool toChildIndex(const cCmlElement& owner, CmlKind kind, const Written& written, cCmlCall& call);
    void toItemIndex(const cCmlElement& holder, const Written& written, cCmlCall& call);
    void toItemUse(const cCmlElement& object, const Written& written, cCmlCall& call);
    void toSound(const Written& written, cCmlCall& call);
    template <typename IndexOf, typename Relook>
    static void toVariable(const Written& written, cCmlCall& call, const IndexOf& indexOf,
                           const Relook& relook);
    template <typename Relook>
    void toTableVariable(bool local, cCmlElement* object, const Written& written, cCmlCall& call,
                         const Relook& relook);

    const CmlLookups& lookups_;
    CmlReport& report_;
    cCmlChildNames childNames_;
};
