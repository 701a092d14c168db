// The model, a form feed, its material library.
#include "models/model.h"
#include "support.h"

FUZZ_TARGET(obj) {
    const std::string_view all = fuzz::text(data, size);
    const size_t modelSize = std::min(all.find('\f'), all.size());
    fuzz::putFile("in.obj", all.substr(0, modelSize));
    fuzz::putFile("in.mtl", all.substr(std::min(modelSize + 1, all.size())));
    cModel model;
    const int result = model.load("in.obj", false);
    fuzz::cDigest digest;
    for (const cModelObject& o : model.objects) digest.addValue(o.colour);
    fuzz::useModel(model, digest);
    return result == 0 ? digest.value() : 0;
}
