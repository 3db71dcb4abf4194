#pragma once

#include <functional>

namespace quav {

class MainWindow;

/// Runs the program with its window until the user quits, and gives the exit status. Files among
/// the arguments are handed to a program that runs already, if there is one. `whenReady` is called
/// when the window has been painted for the first time.
int runApplication(int& argc, char** argv, const std::function<void(MainWindow&)>& whenReady = {});

} // namespace quav
