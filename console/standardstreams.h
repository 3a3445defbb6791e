// The three streams of a process.
#pragma once

// Makes sure that none of the three is closed: a file that is opened later would get the free number
// and receive what is printed. Made first of all in main().
class StandardStreams
{
public:
    StandardStreams();

    // Returns false if a text did not reach standard output, or if that was closed from the start.
    bool isOutputComplete() const;

private:
    bool m_hasOutput;
};
