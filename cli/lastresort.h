// What becomes of exceptions that nobody handles.
#pragma once

// From now on an exception that has nowhere to go, such as one out of a destructor, becomes an error
// line and exit code 1.
void installLastResort() noexcept;

// Makes the object that Qt has for each thread. Qt makes it when it is first needed, and without
// memory for it reads a null pointer: here that becomes an error line and exit code 1 as well.
void makeThreadObject();

// Prints "Error! " and what the exception at hand says, and ends the process with exit code 1. Asks
// for no memory, and tears nothing down: libraries that have been given none may crash at that.
[[noreturn]] void endWithException() noexcept;
