#pragma once
#include <string>
#include <vector>

/// The console's commands about key bindings: 0 done, −1 refused. They read the names of keys and commands
/// anew at each use.
int bindKey(const std::vector<std::string>& params);
int printBindings(const std::vector<std::string>& params);

/// Words that keep a command to one view.
constexpr const char* kThirdPersonWord = "THIRDPERSON";
constexpr const char* kFirstPersonWord = "FIRSTPERSON";
