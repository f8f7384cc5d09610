// Quality of service of a thread (pthread_set_qos_class_self_np(3)).
#pragma once

enum qos_class_t { QOS_CLASS_UTILITY = 0x11 };

extern "C" int pthread_set_qos_class_self_np(qos_class_t quality, int relativePriority);
