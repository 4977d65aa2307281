# SPDX-License-Identifier: GPL-3.0-or-later
# Random actions in the main window; torture/20-monkey runs them.
add_executable(monkey
    monkey/answers.cpp monkey/answers.h
    monkey/expecteddocument.cpp monkey/expecteddocument.h
    monkey/main.cpp
    monkey/monkey.cpp monkey/monkey.h
    monkey/monkey_edits.cpp
    monkey/monkey_files.cpp)
target_link_libraries(monkey PRIVATE zoravel_windowfixture zoravel_options)
