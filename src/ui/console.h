#pragma once
#include <cstdint>
#include <string>
#include <vector>

/// The console's text: printed lines and the line being typed.
class cConsole {
public:
    static constexpr size_t kLineLength = 92;

    bool visible = false;
    std::string line;
    std::vector<std::string> lines; ///< oldest first, at most kLineLength characters each

    int32_t scrollOffset = 0; ///< pixels scrolled back, 12 a line

    void scrollUp(int32_t height, int32_t speed); ///< `height` in lines, `speed` in pixels a frame
    void scrollDown(int32_t speed);
    /// Panel, output and input line over the finished frame; nothing while hidden.
    void draw() const;
    /// Cut into lines; in tool modes the text goes to the terminal as well.
    void print(const std::string& text);
    static void useTerminal(bool on);
};

/// Types a character into `text`; `limit` is the text's length limit plus one. Backspace removes, a full text
/// has its last character replaced, Shift follows the game's own table.
void typeCharacter(std::string& text, int limit, char character, bool shift);
