#pragma once
#include <cstdint>

class cCmlObject;

/// A scripted object attacks with one of its items: `skill` up to 100, `item` the position of the item
/// element among the object's children, `target` a keyword or an object's name.
void attackWith(cCmlObject& self, int32_t skill, int32_t item, int32_t target);
