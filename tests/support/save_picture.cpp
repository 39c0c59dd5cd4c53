#include "app/ConsolePrompter.h"
#include "paint/PaintPicture.h"

#include <iostream>
#include <string>

/// The paint editor's picture without a window. Opens the file that the argument names; each line of standard
/// input is a command: "invert" changes the picture, "save" saves it and prints "saved" or "failed".
int main(int argc, char **argv)
{
    Module1 state;
    ConsolePrompter prompter;
    const PaintSettings settings;
    PaintPicture picture({state, prompter, settings});
    if (argc != 2 || !picture.openFile(QString::fromLocal8Bit(argv[1])))
        return 1;
    for (std::string command; std::getline(std::cin, command);) {
        if (command == "invert") {
            picture.canvas().invertPixels();
            picture.SetImageBuffer();
        } else {
            std::cout << (picture.Save() ? "saved" : "failed") << std::endl;
        }
    }
    return 0;
}
