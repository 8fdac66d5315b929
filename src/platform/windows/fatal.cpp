// Called by the compiler and the standard headers when a program breaks their rules. No
// C++ run-time library is linked, so they end the process.
namespace std {

// Declared by the standard headers, called for a position outside a string_view.
[[noreturn]] void __throw_out_of_range_fmt(const char *, ...)
{
    __builtin_trap();
}

} // namespace std

// A call of a pure virtual function.
extern "C" [[noreturn]] void __cxa_pure_virtual()
{
    __builtin_trap();
}
