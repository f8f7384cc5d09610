// Without a display, Qt aborts the program and advises reinstalling it. This lets the program end with a message of its
// own instead. Main thread only.
#pragma once

namespace vesk {

class DisplayNeeded {
public:
    /// While this object exists, `otherwise` is called where Qt would abort; it must end the process. Keep the object
    /// only while the application object is being constructed. Qt prints what it has tried on standard error.
    explicit DisplayNeeded(void (*otherwise)());
    ~DisplayNeeded();
    DisplayNeeded(const DisplayNeeded&) = delete;
    DisplayNeeded& operator=(const DisplayNeeded&) = delete;
};

}  // namespace vesk
