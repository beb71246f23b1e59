<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="zh_CN">
<context>
    <name>ZoomWidget</name>
    <message>
        <source>CPU温度</source>
        <translation>Темп. ЦП</translation>
    </message>
    <message>
        <source>CPU使用率</source>
        <translation>Загр. ЦП</translation>
    </message>
    <message>
        <source>内存使用率</source>
        <translation>Память</translation>
    </message>
    <message>
        <source>时间</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>功耗</source>
        <translation>Мощн.</translation>
    </message>
    <message>
        <source>日期</source>
        <translation>Дата</translation>
    </message>
    <message>
        <source>风扇转速</source>
        <translation>Вентил.</translation>
    </message>
    <message>
        <source>其他</source>
        <translation>Другое</translation>
    </message>
</context>
<context>
    <name>kivo::VirtualScreenWindow</name>
    <message>
        <source>%1 报告/秒   %2 字节/秒</source>
        <translation>%1 отч./с   %2 байт/с</translation>
    </message>
    <message>
        <source>未连接</source>
        <translation>Отключён</translation>
    </message>
    <message>
        <source>拔出</source>
        <translation>Отключить</translation>
    </message>
    <message>
        <source>插入</source>
        <translation>Подключить</translation>
    </message>
    <message>
        <source>虚拟屏幕</source>
        <translation>Виртуальный экран</translation>
    </message>
</context>
</TS>
