/* SPDX-License-Identifier: Apache-2.0 */
/*
 * A preload library that lets ippeveprinter start where no Avahi or D-Bus
 * daemon runs.
 *
 * Even with "-r off" the program opens a DNS-SD client first, and ends when it
 * cannot ("Unable to initialize DNS-SD.").  Here the functions it calls for that
 * succeed and do nothing.  No header is needed: only names and "a pointer".
 *
 *   cc -shared -fPIC -o no-dnssd.so no-dnssd.c
 */

static int something;

void *avahi_threaded_poll_new(void) { return &something; }
const void *avahi_threaded_poll_get(void *poll) { return poll; }
int avahi_threaded_poll_start(void *poll) { (void)poll; return 0; }
int avahi_threaded_poll_stop(void *poll) { (void)poll; return 0; }
void avahi_threaded_poll_quit(void *poll) { (void)poll; }
void avahi_threaded_poll_free(void *poll) { (void)poll; }
void avahi_threaded_poll_lock(void *poll) { (void)poll; }
void avahi_threaded_poll_unlock(void *poll) { (void)poll; }

void *avahi_client_new(const void *poll, int flags, void *callback, void *data,
                       int *error) {
  (void)poll, (void)flags, (void)callback, (void)data;
  if (error)
    *error = 0;
  return &something;
}
void avahi_client_free(void *client) { (void)client; }
int avahi_client_errno(void *client) { (void)client; return 0; }
int avahi_client_get_state(void *client) { (void)client; return 2; /* running */ }
const char *avahi_client_get_host_name_fqdn(void *client) {
  (void)client;
  return "localhost";
}
