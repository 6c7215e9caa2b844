// SPDX-License-Identifier: MIT
//
// What a program costs that does nothing.
int main() {
    return 0;
}
