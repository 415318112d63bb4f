// A plug-in of the emulator qemu-aarch64: counts the instructions of the program that it runs, and
// prints the count on a line whenever the program writes zero bytes.
#include <inttypes.h>
#include <stddef.h>
#include <stdio.h>

// What is used here of the emulator's interface, which Debian has no header of, in version 1.
struct qemu_plugin_tb;
typedef void (*translated_cb)(uint64_t id, struct qemu_plugin_tb* block);
typedef void (*called_cb)(uint64_t id, unsigned int cpu, int64_t number, uint64_t file,
                          uint64_t text, uint64_t size, uint64_t argument4, uint64_t argument5,
                          uint64_t argument6, uint64_t argument7, uint64_t argument8);
void qemu_plugin_register_vcpu_tb_trans_cb(uint64_t id, translated_cb callback);
void qemu_plugin_register_vcpu_syscall_cb(uint64_t id, called_cb callback);
size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb* block);
void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb* block, int operation,
                                              void* counter, uint64_t summand);
enum { kAddToCounter = 0 };

#define EXPORTED __attribute__((visibility("default")))

EXPORTED const int qemu_plugin_version = 1;
EXPORTED int qemu_plugin_install(uint64_t id, const void* emulator, int count, char** arguments);

static const int64_t kWriteCall = 64;  // of Linux on arm64

static uint64_t g_count;

static void translated(uint64_t id, struct qemu_plugin_tb* block) {
  (void)id;
  qemu_plugin_register_vcpu_tb_exec_inline(block, kAddToCounter, &g_count,
                                           qemu_plugin_tb_n_insns(block));
}

static void called(uint64_t id, unsigned int cpu, int64_t number, uint64_t file, uint64_t text,
                   uint64_t size, uint64_t argument4, uint64_t argument5, uint64_t argument6,
                   uint64_t argument7, uint64_t argument8) {
  (void)id, (void)cpu, (void)file, (void)text;
  (void)argument4, (void)argument5, (void)argument6, (void)argument7, (void)argument8;
  if (number == kWriteCall && size == 0) {
    fprintf(stderr, "%" PRIu64 "\n", g_count);
  }
}

int qemu_plugin_install(uint64_t id, const void* emulator, int count, char** arguments) {
  (void)emulator, (void)count, (void)arguments;
  qemu_plugin_register_vcpu_tb_trans_cb(id, translated);
  qemu_plugin_register_vcpu_syscall_cb(id, called);
  return 0;
}
