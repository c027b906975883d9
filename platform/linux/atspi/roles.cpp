#include "platform/linux/atspi/roles.h"

#include <algorithm>
#include <array>

namespace lomaris {

namespace {

struct RoleNames {
    std::uint32_t number;
    std::string_view role;
    std::string_view subrole = {};
};

constexpr std::string_view unknownRole = "AXUnknown";

/// Sorted by number. The comment of a row is the name of the AT-SPI role if the row has only its number.
constexpr std::array roleTable{
    RoleNames{2, "AXWindow", "AXDialog"},               // alert
    RoleNames{6, "AXImage"},                            // canvas
    RoleNames{7, "AXCheckBox"},                         // check box
    RoleNames{8, "AXMenuItem"},                         // check menu item
    RoleNames{9, "AXWindow", "AXDialog"},               // color chooser
    RoleNames{10, "AXCell"},                            // column header
    RoleNames{11, "AXComboBox"},                        // combo box
    RoleNames{12, "AXDateField"},                       // date editor
    RoleNames{16, "AXWindow", "AXDialog"},              // dialog
    RoleNames{18, "AXImage"},                           // drawing area
    RoleNames{19, "AXWindow", "AXDialog"},              // file chooser
    RoleNames{20, "AXGroup"},                           // filler
    RoleNames{22, "AXWindow", "AXDialog"},              // font chooser
    RoleNames{23, "AXWindow", "AXStandardWindow"},      // frame
    RoleNames{24, "AXGroup"},                           // glass pane
    RoleNames{25, "AXWebArea"},                         // HTML container
    RoleNames{26, "AXImage"},                           // icon
    RoleNames{27, "AXImage"},                           // image
    RoleNames{28, "AXGroup"},                           // internal frame
    RoleNames{29, "AXStaticText"},                      // label
    RoleNames{30, "AXGroup"},                           // layered pane
    RoleNames{31, "AXList"},                            // list
    RoleNames{32, "AXGroup"},                           // list item
    RoleNames{atspi_role::menu, "AXMenu"},              //
    RoleNames{atspi_role::menuBar, "AXMenuBar"},        //
    RoleNames{atspi_role::menuItem, "AXMenuItem"},      //
    RoleNames{36, "AXGroup"},                           // option pane
    RoleNames{37, "AXRadioButton", "AXTabButton"},      // page tab
    RoleNames{38, "AXTabGroup"},                        // page tab list
    RoleNames{39, "AXGroup"},                           // panel
    RoleNames{40, "AXTextField", "AXSecureTextField"},  // password text
    RoleNames{41, "AXMenu"},                            // popup menu
    RoleNames{42, "AXProgressIndicator"},               // progress bar
    RoleNames{43, "AXButton"},                          // push button
    RoleNames{44, "AXRadioButton"},                     // radio button
    RoleNames{45, "AXMenuItem"},                        // radio menu item
    RoleNames{46, "AXGroup"},                           // root pane
    RoleNames{47, "AXCell"},                            // row header
    RoleNames{48, "AXScrollBar"},                       // scroll bar
    RoleNames{49, "AXScrollArea"},                      // scroll pane
    RoleNames{50, "AXSplitter"},                        // separator
    RoleNames{51, "AXSlider"},                          // slider
    RoleNames{52, "AXIncrementor"},                     // spin button
    RoleNames{53, "AXSplitGroup"},                      // split pane
    RoleNames{54, "AXGroup"},                           // status bar
    RoleNames{55, "AXTable"},                           // table
    RoleNames{56, "AXCell"},                            // table cell
    RoleNames{57, "AXCell"},                            // table column header
    RoleNames{58, "AXCell"},                            // table row header
    RoleNames{59, "AXMenuItem"},                        // tear-off menu item
    RoleNames{60, "AXTextArea"},                        // terminal
    RoleNames{atspi_role::text, "AXTextField"},         //
    RoleNames{62, "AXCheckBox", "AXToggle"},            // toggle button
    RoleNames{63, "AXToolbar"},                         // tool bar
    RoleNames{64, "AXHelpTag"},                         // tool tip
    RoleNames{65, "AXOutline"},                         // tree
    RoleNames{66, "AXOutline"},                         // tree table
    RoleNames{68, "AXGroup"},                           // viewport
    RoleNames{69, "AXWindow"},                          // window
    RoleNames{71, "AXGroup"},                           // header
    RoleNames{72, "AXGroup"},                           // footer
    RoleNames{atspi_role::paragraph, "AXGroup"},        //
    RoleNames{74, "AXRuler"},                           // ruler
    RoleNames{75, "AXApplication"},                     // application
    RoleNames{76, "AXTextField"},                       // autocomplete
    RoleNames{77, "AXTextField"},                       // edit bar
    RoleNames{78, "AXGroup"},                           // embedded
    RoleNames{atspi_role::entry, "AXTextField"},        //
    RoleNames{81, "AXStaticText"},                      // caption
    RoleNames{82, "AXWebArea"},                         // document frame
    RoleNames{83, "AXHeading"},                         // heading
    RoleNames{84, "AXGroup"},                           // page
    RoleNames{85, "AXGroup"},                           // section
    RoleNames{87, "AXGroup"},                           // form
    RoleNames{88, "AXLink"},                            // link
    RoleNames{90, "AXRow", "AXTableRow"},               // table row
    RoleNames{91, "AXRow", "AXOutlineRow"},             // tree item
    RoleNames{92, "AXGroup"},                           // document spreadsheet
    RoleNames{93, "AXGroup"},                           // document presentation
    RoleNames{94, "AXGroup"},                           // document text
    RoleNames{95, "AXWebArea"},                         // document web
    RoleNames{96, "AXWebArea"},                         // document email
    RoleNames{97, "AXGroup"},                           // comment
    RoleNames{98, "AXList"},                            // list box
    RoleNames{99, "AXGroup"},                           // grouping
    RoleNames{100, "AXImage"},                          // image map
    RoleNames{101, "AXGroup"},                          // notification
    RoleNames{102, "AXGroup"},                          // info bar
    RoleNames{103, "AXLevelIndicator"},                 // level bar
    RoleNames{104, "AXGroup"},                          // title bar
    RoleNames{105, "AXGroup"},                          // block quote
    RoleNames{109, "AXGroup", "AXDocumentArticle"},     // article
    RoleNames{110, "AXGroup"},                          // landmark
    RoleNames{111, "AXGroup", "AXApplicationLog"},      // log
    RoleNames{112, "AXGroup", "AXApplicationMarquee"},  // marquee
    RoleNames{113, "AXGroup", "AXDocumentMath"},        // math
    RoleNames{115, "AXGroup", "AXApplicationTimer"},    // timer
    RoleNames{116, "AXStaticText"},                     // static
    RoleNames{121, "AXList", "AXDescriptionList"},      // description list
    RoleNames{129, "AXMenuButton"},                     // push button with a menu
};

static_assert(std::is_sorted(roleTable.begin(), roleTable.end(),
                             [](const RoleNames& a, const RoleNames& b) { return a.number < b.number; }));

const RoleNames* find(std::uint32_t number) {
    const auto* const found =
        std::lower_bound(roleTable.begin(), roleTable.end(), number,
                         [](const RoleNames& entry, std::uint32_t wanted) { return entry.number < wanted; });
    return found != roleTable.end() && found->number == number ? found : nullptr;
}

}  // namespace

std::string_view roleName(std::uint32_t role) {
    const RoleNames* const names = find(role);
    return names == nullptr ? unknownRole : names->role;
}

std::string_view subroleName(std::uint32_t role) {
    const RoleNames* const names = find(role);
    return names == nullptr ? std::string_view() : names->subrole;
}

bool roleDependsOnStates(std::uint32_t role) {
    return role == atspi_role::text || role == atspi_role::entry || role == atspi_role::paragraph;
}

std::string_view roleName(std::uint32_t role, atspi::States states) {
    // In a word processor the user types into editable paragraphs.
    const bool isArea =
        role == atspi_role::paragraph ? states.has(atspi::State::editable) : states.has(atspi::State::multiLine);
    return isArea ? "AXTextArea" : roleName(role);
}

bool roleDependsOnParent(std::uint32_t role) { return role == atspi_role::menu || role == atspi_role::menuItem; }

std::string_view roleName(std::uint32_t role, std::uint32_t parentRole) {
    return parentRole == atspi_role::menuBar ? "AXMenuBarItem" : roleName(role);
}

}  // namespace lomaris
