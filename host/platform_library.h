// Host platform library.
#pragma once

// Compares two NUL-terminated byte strings, ASCII letters without regard to case.
// 0 when they are equal, otherwise the sign of the difference.
int ZORVMBstricmp_A(const char* a, const char* b);
