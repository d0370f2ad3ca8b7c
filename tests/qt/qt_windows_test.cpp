// The program's own windows on the desktop host: each drawn whole from its
// model, and the main menu opening another window.
#include "qt/qt_program.hpp"

namespace ravelo {
namespace {

using test::Click;

TEST(QtWindows, EveryWindowShowsItsModelWholeAndClosesWithItsCloseButton) {
    for (const char* name :
         {"RaveloUtils", "FileConv", "CalcxForm", "LogHtmForm1", "UpdtMolForm1", "RaveloReadURLForm", "XYZ",
          "MDL", "PDB", "CSD", "Tripos", "MOPAC", "Alchemy", "Schakal", "M3D", "XCC", "XCX"}) {
        test::QtProgram t;
        Main(t.program(), "", name);
        t.program().DoEvents();
        QWidget* window = t.Window(name);
        ASSERT_TRUE(window && window->isVisible()) << name;
        test::ExpectShown(window, t.program().Window(name));
        std::filesystem::create_directories(RAVELO_SCREENSHOT_DIR);  // a picture of every window
        EXPECT_TRUE(window->grab().save(test::Q(std::string(RAVELO_SCREENSHOT_DIR "/") + name + ".png")));
        window->close();
        EXPECT_FALSE(window->isVisible() || t.program().Window(name).Loaded()) << name;
    }
}

TEST(QtMainWindow, MenuOpensAWindowAndClosingItEndsTheProgram) {
    test::QtProgram t;
    Main(t.program(), "", "");
    t.program().DoEvents();
    QWidget* menu = t.Window("RaveloUtils");
    Click(menu->findChild<QWidget*>("Label4"));  // the file converter opens beside the menu
    EXPECT_TRUE(menu->isVisible() && t.Window("FileConv")->isVisible());
    menu->close();  // ends the program and closes every window
    EXPECT_EQ(test::EndOf([&] { t.program().DoEvents(); }), 0);
    EXPECT_FALSE(menu->isVisible() || t.Window("FileConv")->isVisible());
}

}  // namespace
}  // namespace ravelo
