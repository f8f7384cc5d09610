// Where no display can be reached, Qt ends a program with an abort and advice to reinstall it. This gives the program
// the last word instead. Main thread only.
#pragma once

namespace vesk {

class DisplayNeeded {
public:
    /// While this lives, `otherwise` is called where Qt would abort; it must end the process. Live it should around the
    /// making of the application object and no longer. Qt says on standard error what it has tried.
    explicit DisplayNeeded(void (*otherwise)());
    ~DisplayNeeded();
    DisplayNeeded(const DisplayNeeded&) = delete;
    DisplayNeeded& operator=(const DisplayNeeded&) = delete;
};

}  // namespace vesk
