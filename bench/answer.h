// How a program says what an answer cost it: which keyboard types suit Korean, with their names.
#ifndef BENCH_ANSWER_H
#define BENCH_ANSWER_H

#ifdef __cplusplus
extern "C" {
#endif

// Called when the library is loaded and has done nothing. `answer` reads the name of each type that
// suits Korean, and returns how many there are. Returns the program's exit status.
int measure_answers(int (*answer)(void), int repetitions);

#ifdef __cplusplus
}
#endif

#endif
