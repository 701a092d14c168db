#pragma once
#include <algorithm>
#include <string>

/// One error row, the first time only, for an operation whose subsystem does not exist yet.
void reportNotBuilt(const std::string& operation);

/// A name as a template argument, so that table rows can carry one handler each under its own name.
template <size_t N> struct OperationName {
    char text[N];
    constexpr OperationName(const char (&t)[N]) { std::copy_n(t, N, text); }
};
