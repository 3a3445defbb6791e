// What becomes of exceptions that nobody handles.
#pragma once

// From now on an exception that has nowhere to go, such as one out of a destructor, becomes an error
// line and that exit code.
void installLastResort(int exitCode = 1) noexcept;

// Makes the object that Qt has for each thread. Qt makes it when it is first needed, and without
// memory for it reads a null pointer: here that becomes an error line and the exit code as well.
void makeThreadObject();

// Prints "Error! " and what the exception at hand says, and ends the process with the exit code. Asks
// for no memory, and tears nothing down: libraries that have been given none may crash at that.
[[noreturn]] void endWithException() noexcept;
