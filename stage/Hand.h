#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

// The user's hand: real pointer and key events on a virtual screen.
class CHand {
public:
    struct Place {
        int x = 0;
        int y = 0;
        int nWidth = 0;
        int nHeight = 0;
    };

    explicit CHand(std::string strDisplay) : m_strDisplay(std::move(strDisplay)) {}

    // Where the client area of the window with this title lies, once it is there and stands still; of several
    // the last. Nothing if none comes in time.
    std::optional<Place> FindWindow(const std::string& strTitle,
                                    std::chrono::milliseconds timeout = std::chrono::seconds(10)) const;
    // The titles of all windows, one a line, for what is said when there is none.
    std::string ListWindows() const;
    // It was there and goes.
    bool WaitUntilGone(const std::string& strTitle) const;

    // Screen coordinates; buttons as the window system counts them: 1 left, 3 right, 4 and 5 the wheel.
    bool MoveTo(int x, int y) const;
    bool Press(int nButton = 1) const;
    bool Release(int nButton = 1) const;
    bool Click(int x, int y, int nButton = 1) const;
    // Keys by their names in the window system, one after the other.
    bool Keys(const std::vector<std::string>& keys) const;
    bool Type(const std::string& strText) const;
    bool Minimize(const std::string& strTitle) const;
    bool Activate(const std::string& strTitle) const;

private:
    bool Do(std::vector<std::string> arguments) const;
    std::optional<std::string> Ask(std::vector<std::string> arguments) const;
    std::optional<std::string> FindId(const std::string& strTitle) const;

    std::string m_strDisplay;
};
