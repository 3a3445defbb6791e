# For folders whose targets have precompiled headers: what the compiler cache has to be told of these.
#
# A precompiled header names its headers by their place and knows each by a sum of all its bytes. So the
# cache may give one only for the same bytes in the same place: not for another working copy, as it
# does with a base directory, and not for headers that differ in comments alone, as it does where it
# compares what the preprocessor makes of them. The namespace leaves out what it kept before that.
if(KESTRIX_CCACHE AND CMAKE_CXX_COMPILER_LAUNCHER MATCHES "ccache")
    list(INSERT CMAKE_CXX_COMPILER_LAUNCHER 3
        CCACHE_BASEDIR= CCACHE_DEPEND=1 CCACHE_NAMESPACE=kestrix-precompiled)
endif()

# ccache stores what a precompiled header went into only with this option.
set(KESTRIX_PRECOMPILED_OPTIONS $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
