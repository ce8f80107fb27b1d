// What no script can bring about: the module's entry points, and the keyboard's functions on a canvas in memory.
#include <Elementary.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "Common/Common_Function.h"
#include "MW_CAPI/MWCapiWifi.h"
#include "View/Custom_IPv6_Keyboard.h"
#include "View/IPSettings.h"
#include "View/IPSettings_Apply.h"
#include "View/IPSettings_Values.h"
#include "View/IPSingleton.h"
#include "View/Keyboard_Editing.h"
#include "View/Keyboard_Entry.h"
#include "View/Keyboard_Focus.h"
#include "View/Keyboard_Handlers.h"
#include "View/Keyboard_Idle.h"
#include "View/Keyboard_Keys.h"
#include "View/Keyboard_Popups.h"
#include "View/Keyboard_Remote.h"
#include "View/NS_Buttons.h"
#include "View/NS_Gateway_Check.h"
#include "View/NS_Info_Panel.h"
#include "View/NS_Main.h"
#include "View/NS_Run_Control.h"
#include "View/NS_Wireless.h"
#include "gadget_host.h"

namespace {

int mark;
const auto kHandle = reinterpret_cast<ug_handle>(&mark);

TEST(Entry, FillsTheSevenCallbacksAndNothingElse) {
    EXPECT_EQ(UG_MODULE_INIT(nullptr), -1);
    ug_operations operations{};
    operations.option = 7;
    operations.reserved[0] = &mark;
    ASSERT_EQ(UG_MODULE_INIT(&operations), 0);
    EXPECT_TRUE(operations.create && operations.start && operations.pause && operations.resume && operations.destroy &&
                operations.message && operations.event);
    EXPECT_EQ(operations.key_event, nullptr);
    EXPECT_EQ(operations.reserved[0], &mark);
    EXPECT_EQ(operations.priv, createNetworkStatus());
    EXPECT_EQ(operations.option, 0);
    UG_MODULE_EXIT(nullptr);
    EXPECT_EQ(createNetworkStatus(), operations.priv) << "an exit without a table releases nothing";
    UG_MODULE_EXIT(&operations);
    UG_MODULE_EXIT(&operations);
}

TEST(Entry, CallbacksTolerateMissingArguments) {
    ug_operations operations{};
    ASSERT_EQ(UG_MODULE_INIT(&operations), 0);
    EXPECT_EQ(operations.create(nullptr, 0, nullptr, operations.priv), nullptr);
    EXPECT_EQ(operations.create(kHandle, 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(operations.create(kHandle, 0, nullptr, operations.priv), nullptr) << "there is no window";
    EXPECT_EQ(createNetworkStatus()->popup, nullptr);
    for (void* priv : {operations.priv, static_cast<void*>(nullptr)}) {
        for (const auto callback : {operations.start, operations.pause, operations.resume})
            callback(nullptr, nullptr, priv);
        operations.message(nullptr, nullptr, nullptr, priv);
        operations.event(nullptr, 0, nullptr, priv);
        operations.destroy(priv ? nullptr : kHandle, nullptr, priv);
    }
    operations.destroy(kHandle, nullptr, operations.priv);
    EXPECT_EQ(createNetworkStatus(), operations.priv) << "without a layout there is nothing to release";
    UG_MODULE_EXIT(&operations);
}

TEST(Entry, FunctionsTolerateMissingRecords) {
    for (void (*const function)(sNetworkStatus*) :
         {createNSCommonBtn, reset_text, initialize_status, wireless_animation, check_gateway_wireless})
        function(nullptr);
    for (void (*const function)(sIPSetting*) :
         {IP_Auto_Btn, IP_Man_Btn, DNS_Auto_Btn, DNS_Man_Btn, SetConnectionInfo, initIPSetting, set_Initial_Values})
        function(nullptr);
    for (const Evas_Smart_Cb callback : {_click_cb_cancel, retry_function})
        callback(nullptr, nullptr, nullptr);
    EXPECT_EQ(Set_Wireless_IP_Config_Type(1, nullptr), 0);
    EXPECT_EQ(Set_Wireless_DNS_Config_Type(1, nullptr), 0);
}

TEST(KeyboardEditing, KeysInsertOrDeleteAtTheCursor) {
    constexpr char kBackspace = '\b';
    const std::string sevenGroups = "2001:0db8:0000:0000:0000:0000:0000:";
    const struct {
        std::string text;
        int cursor;
        char key;
        EditedText expected;
    } steps[] = {
        {"200", 3, '1', {"2001:", 5}},
        {"201", 2, '0', {"2001", 3}},  // inside the text no colon comes along
        {"12345", 5, '6', {"123456:", 7}},
        {"2001:0db8:0000:0000:0000:0000:000", 33, '0', {sevenGroups, 35}},
        {sevenGroups + "00a", 38, 'b', {sevenGroups + "00ab", 39}},
        {"12345:0db8:0000:0000:0000:0000:0000", 35, 'a', {"12345:0db8:0000:0000:0000:0000:0000a", 36}},
        {sevenGroups + "00ab", 3, '1', {sevenGroups + "00ab", 3}},
        {"2001:0db8", 3, kBackspace, {"201:0db8", 2}},
        {"2001", 0, kBackspace, {"2001", 0}},
        // Characters of several bytes, which a store may hold; and a cursor outside the text.
        {"é", 1, 'b', {"éb", 2}},
        {"aéb", 2, kBackspace, {"ab", 1}},
        {"20", -5, '1', {"120", 1}},
        {"20", 99, '1', {"201", 3}},
        {"20", -1, kBackspace, {"20", 0}},
    };
    for (const auto& [text, cursor, key, expected] : steps) {
        EXPECT_EQ(key == kBackspace ? deleteBeforeCursor(text, cursor) : insertCharacter(text, cursor, key), expected)
            << text << " at " << cursor;
    }
}

int results;
const char* lastResult;

void noteResult(const char* text) {
    ++results;
    lastResult = text;
}

// The toolkit, a popup to put the keyboard on, and the keyboard.
class KeyboardCalls : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        for (const char* name : {"ELM_DISPLAY", "ELM_ENGINE"})
            setenv(name, "buffer", 1);
        ecore_app_no_system_modules();
        efreet_cache_disable();
        elm_init(0, nullptr);
        elm_policy_set(ELM_POLICY_QUIT, ELM_POLICY_QUIT_NONE);
        Evas_Object* const window = elm_win_add(nullptr, "keyboard", ELM_WIN_BASIC);
        evas_object_resize(window, 1920, 1080);
        evas_object_show(window);
        addThemeExtension();
        parent = elm_popup_add(window);
        elm_object_style_set(parent, "C_PopupBasic_WhiteBottomLarge");
    }
    static void TearDownTestSuite() { elm_shutdown(); }

    void SetUp() override {
        results = 0;
        ipDataSettingChangeValObject()->onResult = noteResult;
        IME_Password_Main(parent, "Gateway", "fe80::1");
        ASSERT_TRUE(isKeyboardOpen());
        keyboard = getCustKeyBoard();
    }
    void TearDown() override {
        delCustKeyboard();
        delIPDataSettingChangeVal();
        turnLoop();
    }
    // Draws, too: a pointer finds only what has its place.
    static void turnLoop() {
        Ecore_Evas* const screen = ecore_evas_ecore_evas_get(evas_object_evas_get(parent));
        for (int turn = 0; turn < 20; ++turn) {
            ecore_main_loop_iterate();
            ecore_evas_manual_render(screen);
        }
    }
    void click(int key) const { evas_object_smart_callback_call(keyboard->mV6_buttons[key], "clicked", nullptr); }
    std::string text() const { return entryText(keyboard->en); }
    int shade() const {
        int red = 0;
        evas_object_color_get(keyboard->popup, &red, nullptr, nullptr, nullptr);
        return red;
    }

    static inline Evas_Object* parent = nullptr;
    custKeyboard* keyboard = nullptr;
};

TEST_F(KeyboardCalls, ArrowsGoToTheNeighbours) {
    const std::vector<std::vector<int>> grid{
        {kKey1, kKey2, kKey3, kKey4, kKey5, kKey6, kKey7, kKey8, kKey9, kKey0, kKeyBackspace},
        {kKeyA, kKeyB, kKeyC, kKeyD, kKeyE, kKeyF, kKeyColon, kKeyLeft, kKeyRight, kKeyDeleteAll},
        {kKeyDone, kKeyCancel}};
    for (std::size_t row = 0; row < grid.size(); ++row) {
        const std::vector<int>& keys = grid[row];
        for (std::size_t column = 0; column < keys.size(); ++column) {
            const std::array ups{keys[column], grid[0][column == 9 ? 10 : column], column == 0 ? +kKeyD : +kKeyRight};
            const std::array downs{grid[1][std::min<std::size_t>(column, 9)], +kKeyDone, keys[column]};
            const std::pair<Elm_Focus_Direction, int> ways[] = {
                {ELM_FOCUS_LEFT, keys[(column + keys.size() - 1) % keys.size()]},
                {ELM_FOCUS_RIGHT, keys[(column + 1) % keys.size()]},
                {ELM_FOCUS_UP, ups[row]},
                {ELM_FOCUS_DOWN, downs[row]}};
            for (const auto& [direction, neighbour] : ways) {
                EXPECT_EQ(elm_object_focus_next_object_get(keyboard->mV6_buttons[keys[column]], direction),
                          keyboard->mV6_buttons[neighbour])
                    << "row " << row << ", column " << column << ", direction " << direction;
            }
        }
    }
}

TEST_F(KeyboardCalls, AnUnusedKeyboardClosesAtTheSecondTick) {
    resetFlag();
    EXPECT_EQ(Timer(keyboard), ECORE_CALLBACK_RENEW);
    click(kKey1);
    EXPECT_EQ(Timer(keyboard), ECORE_CALLBACK_RENEW) << "a key was used";
    resetFlag_OnMouseClick(nullptr, nullptr, nullptr);
    EXPECT_EQ(Timer(keyboard), ECORE_CALLBACK_RENEW);
    EXPECT_EQ(Timer(keyboard), ECORE_CALLBACK_CANCEL);
    EXPECT_FALSE(isKeyboardOpen());
    EXPECT_EQ(results, 0) << "nobody is told";
    custKeyboard unbuilt{};
    EXPECT_EQ(Timer(&unbuilt), ECORE_CALLBACK_RENEW);
}

TEST_F(KeyboardCalls, OnlyOneSmallPopupAtATime) {
    showPopup(keyboard, "title", "message");
    Evas_Object* const message = keyboard->popupMessage;
    ASSERT_NE(message, nullptr);
    showPopup(keyboard, "title", "another");
    click(kKey7);
    EXPECT_EQ(text(), "fe80::1") << "the keys are off";
    _discard_button_cb(keyboard, keyboard->popup, nullptr);
    EXPECT_EQ(keyboard->popupMessage, message);
    EXPECT_EQ(keyboard->cancelPopupMsg, nullptr);
    _response_cb(keyboard, nullptr, nullptr);
    _response_cb(keyboard, nullptr, nullptr);
    EXPECT_FALSE(hasSmallPopup(*keyboard));
    _discard_button_cb(keyboard, keyboard->popup, nullptr);
    showPopup(keyboard, "title", "message");
    EXPECT_EQ(keyboard->popupMessage, nullptr);
    EXPECT_EQ(shade(), 164);
    _discard_cancleBtn_cb(keyboard, nullptr, nullptr);
    EXPECT_EQ(shade(), 255);
}

// Presses the left button on a widget twice before the main loop sees either.
void clickTwice(Evas_Object* widget) {
    Evas* const canvas = evas_object_evas_get(widget);
    Eina_Rectangle area{};
    evas_object_geometry_get(widget, &area.x, &area.y, &area.w, &area.h);
    evas_event_feed_mouse_in(canvas, 0, nullptr);
    evas_event_feed_mouse_move(canvas, area.x + area.w / 2, area.y + area.h / 2, 0, nullptr);
    for (int press = 0; press < 2; ++press) {
        evas_event_feed_mouse_down(canvas, 1, EVAS_BUTTON_NONE, 0, nullptr);
        evas_event_feed_mouse_up(canvas, 1, EVAS_BUTTON_NONE, 0, nullptr);
    }
}

TEST_F(KeyboardCalls, TheClickThatClosesMayArriveTwice) {
    ipDataSettingChangeValObject()->onResult = [](const char* text) {
        noteResult(text);
        delCustKeyboard();
    };
    turnLoop();
    clickTwice(keyboard->mV6_buttons[kKeyDone]);
    turnLoop();
    EXPECT_EQ(results, 1);
    EXPECT_FALSE(isKeyboardOpen());
    IME_Password_Main(parent, "Gateway", "fe80::2");
    keyboard = getCustKeyBoard();
    _discard_button_cb(keyboard, keyboard->popup, nullptr);
    turnLoop();
    clickTwice(elm_object_part_content_get(keyboard->cancelPopupMsg, "button1"));
    turnLoop();
    EXPECT_EQ(results, 2);
    EXPECT_EQ(lastResult, nullptr) << "discarded";
}

TEST_F(KeyboardCalls, TheClickThatOpensTheSettingsMayArriveTwice) {
    sNetworkStatus* const status = createNetworkStatus();
    status->popup = parent;
    status->layout = elm_layout_add(parent);
    initConnParameter();
    ip_setting(status, nullptr, nullptr);
    ASSERT_TRUE(isSettingsOpen());
    const Evas_Object* const first = getObject()->popup;
    ip_setting(status, nullptr, nullptr);
    EXPECT_EQ(getObject()->popup, first) << "one popup above the other, and nobody would delete the first";
    destroyIPSettings();
    status->popup = status->layout = nullptr;
}

TEST_F(KeyboardCalls, IncompleteCallsChangeNothing) {
    Evas_Object* const button = keyboard->mV6_buttons[kKeyBackspace];
    for (const auto handler : {back_Btn_cb, deleteAll_Btn_cb, cursorLeft_cb, cursorRight_cb, appendString_cb}) {
        handler(nullptr, button, nullptr);
        handler(keyboard, nullptr, nullptr);
    }
    Evas_Event_Key_Down nameless{};
    ProcessRemoteKeysOnPopup(keyboard, nullptr, keyboard->popup, nullptr);
    ProcessRemoteKeysOnPopup(keyboard, nullptr, keyboard->popup, &nameless);
    ProcessRemoteKeysOnPopup(nullptr, nullptr, keyboard->popup, &nameless);
    showPopup(nullptr, "title", "message");
    showPopup(keyboard, nullptr, "message");
    showPopup(keyboard, "title", nullptr);
    _discard_button_cb(keyboard, nullptr, nullptr);
    for (const auto handler : {_discard_button_cb, _discard_cancleBtn_cb, _response_cb})
        handler(nullptr, button, nullptr);
    for (const auto call : {custKeyboardInit, custKeyboardDeInit, create_IPv6_keyboard_buttons, populate_FocusHandler,
                            set_Single_focus_chain, set_focus_chain_KeyBoardButtons}) {
        call(nullptr);
    }
    EXPECT_EQ(ipv6_keyboard_mouse_focus_enable_disable(nullptr, true), -1);
    EXPECT_EQ(Timer(nullptr), ECORE_CALLBACK_CANCEL);
    EXPECT_FALSE(hasSmallPopup(*keyboard));
    EXPECT_EQ(text(), "fe80::1");
    EXPECT_EQ(entryCursor(keyboard->en), 7);
}

}  // namespace
