#pragma once

extern "C" char*** _NSGetEnviron();  // NOLINT(bugprone-reserved-identifier): its name there
