#pragma once
#include <cstdint>
#include <string>
#include <vector>

struct SettingsScreen;

/// The menu: a panel of 675 × 520 pixels in the window's middle, with pages of buttons, lists of names, text
/// prompts and the settings screens. Reads the key state and the mouse once a frame. Pixels of the panel,
/// from its lower left corner; times in frames.
class cMenu {
public:
    enum Page : int32_t {
        kMainPage = 0,
        kSettingsPage = 1,
        kCreditsPage = 2,
        kInputPage = 3,
        kVideoPage = 4,
        kAudioPage = 5,
        kChooserPage = 256, ///< of the settings for a new game
    };
    static constexpr int32_t kTextRow = 28;        ///< button number of an entry without pictures
    static constexpr size_t kMostItems = 52;       ///< entries of a page
    static constexpr int32_t kFullSlide = 32;      ///< frames in which the panel comes and goes
    static constexpr int32_t kVisibleHeight = 270; ///< of the page at a time

    struct Item {
        int32_t button; ///< 0 … 13, or kTextRow
        int32_t x, y;   ///< centre
        int32_t halfWidth, halfHeight;
        int32_t highlight = 0; ///< 0 … 16
    };

    /// On the main page. Keys that are held already wait 24 frames.
    void open();
    bool isVisible() const { return visible_; }
    /// Once at the end of every frame: input, then the picture. Nothing while the menu is closed.
    void draw();
    /// A sentence that the menu shows until the player chooses something.
    void setNotice(const std::string& sentence) { notice_ = sentence; }
    /// Stops the music and loads a saved game, in which the menu closes; one that leads nowhere leaves it
    /// open with a notice. False when there is none of that name.
    bool loadGame(const std::string& heroName);
    /// After every mode set.
    void loadPictures();
    int32_t texture() const { return texture_; }
    /// The mouse pointer with its tip at (x, y), y upwards, in the current 2D projection.
    void drawPointer(int x, int y) const;
    /// The title's part of the menu's picture, which must be bound, between two corners.
    static void drawTitle(float x0, float y0, float x1, float y1);

    // What is shown.
    int32_t page() const { return page_; }
    int32_t slide() const { return slide_; }
    const std::vector<Item>& items() const { return items_; }
    int32_t selected() const { return selected_; }
    int32_t scroll() const { return scroll_; }
    const std::vector<std::string>& listNames() const { return listNames_; }
    const std::string& title() const { return title_; } ///< of the list or prompt
    const std::string& notice() const { return notice_; }
    bool isCapturing() const { return capture_ != kNoCapture; }

private:
    struct Tables;                                           ///< pages and their entries (menu_pages.cpp)
    static constexpr int32_t kOriginX = 337, kOriginY = 264; ///< the window's middle, from the panel's corner
    static constexpr int32_t kPageLeft = 20, kPageRight = 655, kPageFoot = 20,
                             kPageTop = 290;                  ///< what shows it
    static constexpr int32_t kBarLeft = 633, kBarRight = 654; ///< the scroll bar
    static constexpr int32_t kHoldFrames = 24; ///< before a held key acts again, and before it first acts
    struct Picture {
        float s0, s1, t0, t1;
        int32_t halfWidth, halfHeight;
    };
    enum Source : uint8_t { kReturnKey, kMouseButton, kRightKey, kLeftKey };
    enum Columns : uint8_t { kBothViews, kThirdPerson, kFirstPerson, kColumnCount };
    enum Capture : uint8_t { kNoCapture, kAwaitRelease, kAwaitKey };

    // Pages and flows (menu_pages.cpp).
    void readRectangles();
    static const SettingsScreen* settingsScreen(Page page); ///< null for other pages
    void showPage(Page page);
    void showButtons(Page page);
    void showSettingsScreen(Page page);
    void showList(const std::string& title, std::vector<std::string> names,
                  void (cMenu::*choose)(const std::string& name));
    void ask(const std::string& title, int limit, void (cMenu::*answer)(const std::string& text));
    void activate(Source source);
    void goBack();
    void close() { visible_ = false; }
    void resume();
    void newGame();
    void chooseHero();
    void toSettings();
    void toCredits();
    void toAudio();
    void toVideo();
    void toInput();
    void quit();
    void loadDefaults();
    void chooseSettings();
    void askSettingsName();
    void accept();
    void cancel();
    void takeHeroName(const std::string& name);
    void takeStart(const std::string& settings);
    void takeNewSettings(const std::string& name);
    void takeHero(const std::string& name);
    void takeSettings(const std::string& name);
    void takeSettingsName(const std::string& name);
    static void prepareStart();
    void startGame();
    void leaveForGame();

    // Input of a frame (menu_keys.cpp).
    void handleInput();
    void answerPrompt(bool back);
    void captureKey();
    void bindKey(int key);
    void selectByMouse();
    void dragSlider();
    void moveSelection(int by);
    void scrollBy(int pixels);
    void keepSelectedVisible();
    bool isOverScrollBar() const;
    void scrollTowardsPointer();
    int32_t thumbFoot() const; ///< of the scroll bar's thumb
    int32_t thumbHeight() const;
    void stepHighlights();
    void activateRow(Source source);
    int32_t pointerX() const;
    int32_t pointerY() const;

    // The picture (menu_screen.cpp).
    void paint() const;
    void paintTitle() const;
    void paintPrompt() const;
    void paintItems() const;
    void paintButton(const Item& item) const;
    void paintPicture(const Picture& picture, int x, int y, int alpha) const;
    void paintScrollBar() const;
    void paintCredits() const;
    void paintRows() const;
    void paintRow(size_t row, int y) const;
    void paintKeys(size_t command, int y) const;
    void paintCrosshair() const;
    void setInk(bool chosen) const;
    int32_t fullAlpha() const { return 8 * slide_ - 1; } ///< of what is opaque once the panel has come

    bool visible_ = false;
    int32_t slide_ = 0; ///< 0 … kFullSlide
    Page page_ = kMainPage;
    std::vector<Item> items_;
    int32_t selected_ = 0;
    bool list_ = false;
    std::vector<std::string> listNames_;
    std::string title_, notice_;
    int32_t scroll_ = 0, contentHeight_ = kVisibleHeight;
    /// Frames before the key acts again.
    int32_t holdUp_ = 0, holdDown_ = 0, holdActivate_ = 0, holdBack_ = 0, holdLeft_ = 0;
    bool dragArmed_ = false; ///< the mouse button was up since the page was shown
    Columns columns_ = kBothViews;
    Capture capture_ = kNoCapture;
    std::string heroName_;
    void (cMenu::*choose_)(const std::string& name) = nullptr;
    void (cMenu::*answer_)(const std::string& text) = nullptr;
    std::vector<Picture> pictures_;
    int32_t texture_ = -1, pointerTexture_ = -1;
};
