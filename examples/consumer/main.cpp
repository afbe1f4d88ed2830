#include <zorvodsg/zorvodsg.h>
#include <iostream>

int main() {
    ZorvoDSG::Exception e(ZorvoDSG::eVariableNotFound, L"temp", "a.nc");
    std::wcout << static_cast<const wchar_t*>(e.ToString()) << L'\n';
}
