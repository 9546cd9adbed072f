// A module without the entry points of a plug-in.
// SPDX-License-Identifier: MIT

extern "C" int answer();
int answer()
{
    return 42;
}
